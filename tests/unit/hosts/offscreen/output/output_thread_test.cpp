#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <thread>
#include <utility>

#include "hosts/offscreen/output/output_thread.h"

namespace offscreen {
namespace {

class FunctionSink : public Sink {
public:
    explicit FunctionSink(std::function<void(const Picture&)> function) : function_(std::move(function)) {}
    void take(const Picture& picture) override { function_(picture); }

private:
    std::function<void(const Picture&)> function_;
};

// Of the calling thread: -20 (goes first) to 19.
int niceness() { return getpriority(PRIO_PROCESS, 0); }

TEST(OutputThread, GivesWayToTheDrawingThread) {
    const int drawing = niceness();
    int output = 0, encoder = 0;
    FunctionSink sink([&](const Picture&) {
        output = niceness();
        std::thread([&] { encoder = niceness(); }).join();
    });
    OutputThread thread(sink);
    thread.deliver({});
    thread.finish();
    EXPECT_EQ(niceness(), drawing);
    EXPECT_EQ(output, std::min(drawing + 5, 19));
    EXPECT_EQ(encoder, output);
}

TEST(OutputThread, HasWrittenAPictureOnceKHeldLaterOnesWereDelivered) {
    constexpr int kPictures = 200;
    constexpr int kBuffers = OutputThread::kHeld + 1;
    std::uint8_t pixels[kBuffers];
    int overwritten = 0, taken = 0;
    FunctionSink sink([&](const Picture& picture) {
        std::this_thread::sleep_for(std::chrono::microseconds(200)); // slower than drawing
        if (*picture.pixels != picture.info.frame) ++overwritten;
        ++taken;
    });
    OutputThread thread(sink);
    for (int i = 0; i < kPictures; ++i) {
        Picture picture;
        picture.info.frame = i;
        picture.pixels = &pixels[i % kBuffers];
        pixels[i % kBuffers] = static_cast<std::uint8_t>(i);
        thread.deliver(picture);
    }
    thread.finish();
    EXPECT_EQ(taken, kPictures);
    EXPECT_EQ(overwritten, 0);
}

} // namespace
} // namespace offscreen
