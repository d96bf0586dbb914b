// The random generator.
#include <gtest/gtest.h>

#include "show/image/random.h"
#include "tests/unit/show/image/reference.h"

namespace {

// The state that every run of the show starts from.
constexpr std::uint32_t kS1 = 0x31C95435, kS2 = 0x1201F90A, kS3 = 0x76C30533;

// Taken before any test has drawn.
const RandomState g_at_start = g_random;

class Random : public testing::Test {
protected:
    void SetUp() override { g_random = g_at_start; }
};

} // namespace

TEST_F(Random, StartsFromTheFixedState) {
    EXPECT_EQ(g_at_start.s1, kS1);
    EXPECT_EQ(g_at_start.s2, kS2);
    EXPECT_EQ(g_at_start.s3, kS3);
}

TEST_F(Random, FirstNumberIsTheOneComputedByHand) {
    // s1: (31C95434 << 12) ^ ((2A86A000 ^ 31C95435) >> 19) = 95434000 ^ 00000369
    // s2: (1201F908 << 4)  ^ ((4807E428 ^ 1201F90A) >> 25) = 201F9080 ^ 0000002D
    // s3: (76C30530 << 17) ^ ((B6182998 ^ 76C30533) >> 11) = 0A600000 ^ 00181B65
    EXPECT_EQ(random_next(), 0xBF24C8A1u);
    EXPECT_EQ(g_random.s1, 0x95434369u);
    EXPECT_EQ(g_random.s2, 0x201F90ADu);
    EXPECT_EQ(g_random.s3, 0x0A781B65u);
}

TEST_F(Random, IsTheSumOfThreeShiftRegisters) {
    reference::BitSerialGenerator model(kS1, kS2, kS3);
    for (int i = 0; i < 20000; ++i) ASSERT_EQ(random_next(), model.next()) << i;
}

TEST_F(Random, SeedSetsTheSecondComponentToZeroForEver) {
    for (std::uint32_t seed : {0u, 1u, 2000u, 2222u, 20000u, 0xFFFFFFFFu}) {
        random_seed(seed);
        for (int i = 0; i < 1000; ++i) {
            ASSERT_EQ(g_random.s2, 0u);
            const std::uint32_t number = random_next();
            ASSERT_EQ(number, g_random.s1 ^ g_random.s3);
        }
    }
}

TEST_F(Random, SeedReturnsItsOneStep) {
    for (std::uint32_t seed : {0u, 2000u, 0x80000000u}) {
        reference::BitSerialGenerator model(seed, 0, ~seed);
        EXPECT_EQ(random_seed(seed), model.next());
        for (int i = 0; i < 100; ++i) ASSERT_EQ(random_next(), model.next());
    }
}

TEST_F(Random, SeedZeroLeavesTheThirdComponentAlone) {
    random_seed(0);
    reference::BitSerialGenerator third(0, 0, 0xFFFFFFFF);
    third.next();
    for (int i = 0; i < 1000; ++i) {
        ASSERT_EQ(g_random.s1, 0u);
        ASSERT_EQ(random_next(), third.next());
    }
}

TEST_F(Random, SameSeedSameNumbers) {
    random_seed(2000);
    const std::uint32_t first = random_next();
    random_seed(2000);
    EXPECT_EQ(random_next(), first);
}

TEST_F(Random, StepOnACopyOfTheStateLeavesTheProcessAlone) {
    RandomState copy = g_random;
    const std::uint32_t number = random_step(copy);
    EXPECT_EQ(g_random.s1, kS1);
    EXPECT_EQ(random_next(), number);
}

TEST_F(Random, BlocksHoldTheSameNumbers) {
    reference::BitSerialGenerator model(kS1, kS2, kS3);
    RandomBlock block;
    random_begin(block);
    for (int i = 0; i < 5000; ++i) ASSERT_EQ(random_next(block), model.next()) << i;
    random_end(block);
    EXPECT_EQ(random_next(), model.next());
}

TEST_F(Random, BlockLeavesTheGeneratorBehindWhatWasTaken) {
    for (std::size_t count : {0u, 1u, 255u, 256u, 1023u, 1024u, 1025u, 2048u}) {
        RandomState expected = g_random;
        RandomBlock block;
        random_begin(block);
        for (std::size_t i = 0; i < count; ++i) ASSERT_EQ(random_next(block), random_step(expected));
        random_end(block);
        EXPECT_EQ(g_random.s1, expected.s1) << count;
        EXPECT_EQ(g_random.s2, expected.s2) << count;
        EXPECT_EQ(g_random.s3, expected.s3) << count;
    }
}

TEST_F(Random, BlocksFollowASeed) {
    random_seed(2222);
    RandomState expected = g_random;
    RandomBlock block;
    random_begin(block);
    for (int i = 0; i < 3000; ++i) ASSERT_EQ(random_next(block), random_step(expected));
}
