#include <gtest/gtest.h>

#include <cmath>

#include "show/stage/vectors.h"

TEST(Vectors, TheCrossProductIsRightHanded) {
    const float a[3] = {1, 2, 3};
    const float b[3] = {4, 5, 6};
    float out[3];
    EXPECT_EQ(vec3_cross(out, a, b), out);
    EXPECT_EQ(out[0], 2 * 6 - 3 * 5);
    EXPECT_EQ(out[1], 3 * 4 - 1 * 6);
    EXPECT_EQ(out[2], 1 * 5 - 2 * 4);
}

TEST(Vectors, ScalingByTheLengthMultiplies) {
    const float v[3] = {3, 0, 4};
    float out[3];
    EXPECT_EQ(vec3_scale_by_length(out, v), out);
    EXPECT_EQ(out[0], 15);
    EXPECT_EQ(out[1], 0);
    EXPECT_EQ(out[2], 20);
}

TEST(Vectors, TheCrossProductRoundsOnce) {
    const float a[3] = {0, 4097, 4096};
    const float b[3] = {0, 4096, 4095};
    float out[3];
    vec3_cross(out, a, b);
    EXPECT_EQ(out[0], -1.0f); // 4097 * 4095 - 4096 * 4096: the products need more than a float
}

TEST(Vectors, TheLengthIsRoundedToFloatBeforeItMultiplies) {
    int told_apart = 0;
    for (int i = 1; i <= 100; ++i) {
        const float v[3] = {static_cast<float>(i) / 7, 1.3f, 0};
        const double x = v[0], y = v[1];
        const float length = static_cast<float>(std::sqrt(x * x + y * y));
        float out[3];
        vec3_scale_by_length(out, v);
        ASSERT_EQ(out[0], v[0] * length);
        told_apart += out[0] != static_cast<float>(x * std::sqrt(x * x + y * y));
    }
    EXPECT_GT(told_apart, 0);
}

TEST(Vectors, ResultsMayReplaceTheirOperands) {
    float a[3] = {1, 2, 3};
    const float b[3] = {4, 5, 6};
    vec3_cross(a, a, b);
    EXPECT_EQ(a[0], -3);
    EXPECT_EQ(a[1], 6);
    EXPECT_EQ(a[2], -3);
    float v[3] = {3, 0, 4};
    vec3_scale_by_length(v, v);
    EXPECT_EQ(v[0], 15);
    EXPECT_EQ(v[2], 20);
}
