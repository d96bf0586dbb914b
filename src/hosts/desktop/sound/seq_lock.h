// A small value that one thread publishes and another reads whole, without a lock: the writer never waits,
// the reader tries again in the rare case that it was overtaken.
//
// Each word is an atomic of its own, so that a read that is overtaken is discarded but never undefined. The
// words are stored with release and loaded with acquire order: a reader that sees any word of a newer value
// therefore also sees the newer sequence number, and knows.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace sound {

template <typename T>
class SeqLock {
    static_assert(std::is_trivially_copyable<T>::value, "the value travels as plain words");
    static_assert(sizeof(T) % sizeof(std::uint64_t) == 0, "the value fills whole words");

public:
    explicit SeqLock(const T& value) { store(value); }

    // Publishes `value`. One thread at a time. Wait-free.
    void store(const T& value) {
        Words words;
        std::memcpy(words.data(), &value, sizeof(T));
        const std::uint64_t sequence = sequence_.load(std::memory_order_relaxed);
        sequence_.store(sequence + 1, std::memory_order_relaxed); // odd: being written
        for (std::size_t i = 0; i < kWords; ++i) words_[i].store(words[i], std::memory_order_release);
        sequence_.store(sequence + 2, std::memory_order_release);
    }

    // The value last published. Any thread.
    T load() const {
        for (;;) {
            const std::uint64_t before = sequence_.load(std::memory_order_acquire);
            Words words;
            for (std::size_t i = 0; i < kWords; ++i) words[i] = words_[i].load(std::memory_order_acquire);
            const std::uint64_t after = sequence_.load(std::memory_order_relaxed);
            if (before != after || before % 2 != 0) continue;
            T value;
            std::memcpy(&value, words.data(), sizeof(T));
            return value;
        }
    }

private:
    static constexpr std::size_t kWords = sizeof(T) / sizeof(std::uint64_t);
    using Words = std::array<std::uint64_t, kWords>;

    std::atomic<std::uint64_t> sequence_{0};
    std::array<std::atomic<std::uint64_t>, kWords> words_{};
};

} // namespace sound
