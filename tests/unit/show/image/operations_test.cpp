// What holds for every operation: one call of the progress hook, null is ignored, and without memory an image
// stays as it was.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <string>

#include "show/image/bmp.h"
#include "show/image/filters.h"
#include "show/image/generators.h"
#include "show/image/image.h"
#include "show/image/noise.h"
#include "show/image/progress.h"
#include "show/image/transforms.h"
#include "show/image/upload.h"
#include "tests/unit/show/image/support.h"

namespace {

const std::int32_t kKernel[9] = {1, 2, 1, 2, 4, 2, 1, 2, 1};

struct InPlace {
    std::string name;
    std::function<void(Image*)> run;
};

const InPlace kInPlace[] = {
    {"set_alpha", [](Image* img) { image_set_alpha(img, img); }},
    {"fill", [](Image* img) { image_fill(img, 0xFF123456); }},
    {"fill_rect", [](Image* img) { image_fill_rect(img, 1, 1, 2, 2, 0xFF123456); }},
    {"line", [](Image* img) { image_line(img, 0, 0, 3, 2, 0xFF123456); }},
    {"noise", [](Image* img) { image_noise(img, 100); }},
    {"scatter_noise", [](Image* img) { image_scatter_noise(img, 2); }},
    {"plasma", [](Image* img) { image_plasma(img, 1000, 0.5); }},
    {"radial", [](Image* img) { image_radial(img, 0.0, 1.0); }},
    {"linear_gradient", [](Image* img) { image_linear_gradient(img, 0, 0, 3, 3); }},
    {"cells", [](Image* img) { image_cells(img, 2, true); }},
    {"convolve", [](Image* img) { image_convolve(img, kKernel, 1, 16.0, 0); }},
    {"convolve_h", [](Image* img) { image_convolve_h(img, kKernel, 2, 16.0, 0); }},
    {"convolve_v", [](Image* img) { image_convolve_v(img, kKernel, 2, 16.0, 0); }},
    {"blur_h", [](Image* img) { image_blur_h(img, 3, 1.0); }},
    {"blur_v", [](Image* img) { image_blur_v(img, 3, 1.0); }},
    {"blur_directional", [](Image* img) { image_blur_directional(img, 2, 0.5, 0.5, 1.0); }},
    {"levels", [](Image* img) { image_levels(img, 7, 0, 65535, 65535, 0); }},
    {"contrast", [](Image* img) { image_contrast(img, 7, 0, 2.0); }},
    {"blend", [](Image* img) { image_blend(img, img, kMixAdd, 256); }},
    {"rank", [](Image* img) { image_rank(img, 1); }},
    {"emboss", [](Image* img) { image_emboss(img, 0.5); }},
    {"colorize", [](Image* img) { image_colorize(img, 0xFF000080, 0xFFFF8000); }},
    {"gamma", [](Image* img) { image_gamma(img, 7, 2.0); }},
    {"posterize", [](Image* img) { image_posterize(img, 7, 3); }},
    {"light",
     [](Image* img) {
         image_light(img, img, {0.5, 0.5, 0.5, 0.5, 3.0});
     }},
    {"shift", [](Image* img) { image_shift(img, 1, 1); }},
    {"shrink", [](Image* img) { image_shrink(img, 2, 2); }},
    {"enlarge", [](Image* img) { image_enlarge(img, 2, 2); }},
    {"displace", [](Image* img) { image_displace(img, img, 64, 64, false); }},
    {"transform",
     [](Image* img) {
         image_transform(img, {0.5, 0.5, -0.5, 0.5});
     }},
    {"rotozoom", [](Image* img) { image_rotozoom(img, 0.5, 2.0); }},
    {"polarize", [](Image* img) { image_polarize(img); }},
};

struct NewForm {
    std::string name;
    std::function<Image*(const Image*)> run;
    int progress_calls = 1;
};

const NewForm kNewForms[] = {
    {"create_like", [](const Image* img) { return image_create_like(img); }, 0},
    {"copy", [](const Image* img) { return image_copy(img); }, 0},
    {"convolved", [](const Image* img) { return image_convolved(img, kKernel, 1, 16.0, 0); }},
    {"convolved_h", [](const Image* img) { return image_convolved_h(img, kKernel, 2, 16.0, 0); }},
    {"convolved_v", [](const Image* img) { return image_convolved_v(img, kKernel, 2, 16.0, 0); }},
    {"ranked", [](const Image* img) { return image_ranked(img, 1); }},
    {"embossed", [](const Image* img) { return image_embossed(img, 0.5); }},
    {"colorized", [](const Image* img) { return image_colorized(img, 0xFF000080, 0xFFFF8000); }},
    {"shifted", [](const Image* img) { return image_shifted(img, 1, 1); }},
    {"shrunk", [](const Image* img) { return image_shrunk(img, 2, 2); }},
    {"enlarged", [](const Image* img) { return image_enlarged(img, 2, 2); }},
    {"displaced", [](const Image* img) { return image_displaced(img, img, 64, 64, false); }},
    {"transformed",
     [](const Image* img) {
         return image_transformed(img, {0.5, 0.5, -0.5, 0.5});
     }},
    {"rotozoomed", [](const Image* img) { return image_rotozoomed(img, 0.5, 2.0); }},
    {"polarized", [](const Image* img) { return image_polarized(img); }},
};

// The operation of a table that has a name.
template <class Operation, std::size_t N>
const Operation& named(const Operation (&table)[N], const char* name) {
    return *std::find_if(table, table + N,
                         [name](const Operation& operation) { return operation.name == name; });
}

// What each operation refuses, of what is not said by null.
const InPlace kRefused[] = {
    {"set_alpha of another size",
     [](Image* img) { image_set_alpha(img, make_filled(2, 2, kImageGrey, 1).get()); }},
    {"line that ends outside", [](Image* img) { image_line(img, 0, 0, 7, 0, 0xFF123456); }},
    {"scatter_noise of density 0", [](Image* img) { image_scatter_noise(img, 0); }},
    {"convolve without a kernel", [](Image* img) { image_convolve(img, nullptr, 1, 16.0, 0); }},
    {"blur_h of a negative radius", [](Image* img) { image_blur_h(img, -1, 1.0); }},
    {"blur_v of a negative radius", [](Image* img) { image_blur_v(img, -1, 1.0); }},
    {"blur_directional of a negative radius",
     [](Image* img) { image_blur_directional(img, -1, 0.5, 0.5, 1.0); }},
    {"blend of another size",
     [](Image* img) { image_blend(img, make_filled(2, 2, kImageGrey, 1).get(), kMixAdd, 256); }},
    {"colorize of colour",
     [](Image* img) {
         if (image_has_three_planes(img)) image_colorize(img, 0xFF000080, 0xFFFF8000);
     }},
    {"gamma of 0", [](Image* img) { image_gamma(img, 15, 0.0); }},
    {"posterize to -1 levels", [](Image* img) { image_posterize(img, 15, -1); }},
    {"posterize to too many levels", [](Image* img) { image_posterize(img, 15, 65536); }},
    {"light by another size",
     [](Image* img) {
         image_light(img, make_filled(2, 2, kImageGrey, 1).get(), {0.5, 0.5, 0.5, 0.5, 3.0});
     }},
    {"shrink by 0", [](Image* img) { image_shrink(img, 0, 2); }},
    {"shrink by more than the size", [](Image* img) { image_shrink(img, 2, 6); }},
    {"enlarge by 0", [](Image* img) { image_enlarge(img, 2, 0); }},
    {"enlarge beyond 2^31 values", [](Image* img) { image_enlarge(img, 100000, 100000); }},
    {"displace by another size",
     [](Image* img) { image_displace(img, make_filled(2, 2, kImageGrey, 1).get(), 64, 64, false); }},
    {"rotozoom to 0", [](Image* img) { image_rotozoom(img, 0.5, 0.0); }},
};

// Grey, so that image_colorize takes it.
ImagePtr some_image() {
    Material material(70);
    return make_image(material.picture(7, 5, kImageGrey));
}

// With all planes, so that memory can run out between them.
ImagePtr some_full_image() {
    Material material(71);
    return make_image(material.picture(7, 5, kImageColor | kImageAlpha | kImageWrap));
}

using MakeImage = ImagePtr (*)();
constexpr MakeImage kSomeImages[] = {some_image, some_full_image};

void expect_untouched_without_memory(const InPlace& operation, MakeImage make) {
    for (int successes = 0;; ++successes) {
        const ImagePtr img = make();
        const Picture before = picture_of(img.get());
        const ProgressCount progress;
        bool ran_out = false;
        {
            const ScarceMemory memory(successes);
            operation.run(img.get());
            ran_out = memory.ran_out();
        }
        if (!ran_out) return;
        EXPECT_EQ(picture_of(img.get()), before) << operation.name << " after " << successes;
        EXPECT_EQ(progress.calls(), 0) << operation.name << " after " << successes;
    }
}

void expect_null_without_memory(const NewForm& operation, MakeImage make) {
    for (int successes = 0;; ++successes) {
        const ImagePtr img = make();
        const ProgressCount progress;
        Image* result = nullptr;
        bool ran_out = false;
        {
            const ScarceMemory memory(successes);
            result = operation.run(img.get());
            ran_out = memory.ran_out();
        }
        const ImagePtr owner = owned(result);
        if (!ran_out) return;
        EXPECT_EQ(result, nullptr) << operation.name << " after " << successes;
        EXPECT_EQ(progress.calls(), 0) << operation.name << " after " << successes;
    }
}

} // namespace

TEST(Operations, InPlaceCallTheProgressHookOnce) {
    for (const InPlace& operation : kInPlace) {
        const ImagePtr img = some_image();
        const ProgressCount progress;
        operation.run(img.get());
        EXPECT_EQ(progress.calls(), 1) << operation.name;
    }
}

TEST(Operations, InNewFormCallTheProgressHookOnceUnlessTheyOnlyAllocate) {
    for (const NewForm& operation : kNewForms) {
        const ImagePtr img = some_image();
        const ProgressCount progress;
        const ImagePtr result = owned(operation.run(img.get()));
        EXPECT_NE(result, nullptr) << operation.name;
        EXPECT_EQ(progress.calls(), operation.progress_calls) << operation.name;
    }
}

TEST(Operations, RunWithoutAProgressHook) {
    ASSERT_EQ(g_progress_hook, nullptr);
    for (const InPlace& operation : kInPlace) operation.run(some_image().get());
    for (const NewForm& operation : kNewForms) owned(operation.run(some_image().get()));
}

TEST(Operations, IgnoreNullAndDoNotReportProgress) {
    const ProgressCount progress;
    for (const InPlace& operation : kInPlace) operation.run(nullptr);
    for (const NewForm& operation : kNewForms) EXPECT_EQ(operation.run(nullptr), nullptr) << operation.name;
    EXPECT_EQ(progress.calls(), 0);
}

TEST(Operations, LeaveAloneWhatTheyRefuseAndDoNotReportProgress) {
    for (const InPlace& refused : kRefused) {
        for (const MakeImage make : kSomeImages) {
            const ImagePtr img = make();
            const Picture before = picture_of(img.get());
            const ProgressCount progress;
            refused.run(img.get());
            EXPECT_EQ(picture_of(img.get()), before) << refused.name;
            EXPECT_EQ(progress.calls(), 0) << refused.name;
        }
    }
}

TEST(Operations, ThatMakeNoPixelsDoNotReportProgress) {
    const ProgressCount progress;
    Image* const dst = image_create(7, 5, kImageColor);
    ASSERT_NE(dst, nullptr);
    EXPECT_EQ(progress.calls(), 0) << "create";
    image_replace(dst, some_full_image().release());
    EXPECT_EQ(progress.calls(), 0) << "replace";
    image_upload(dst, kTextureMipmapped);
    EXPECT_EQ(progress.calls(), 0) << "upload";
    std::int32_t size = 0;
    std::free(image_to_bmp(dst, &size));
    EXPECT_GT(size, 0);
    EXPECT_EQ(progress.calls(), 0) << "to_bmp";
    image_free(dst);
    EXPECT_EQ(progress.calls(), 0) << "free";
}

TEST(Operations, InPlaceLeaveTheImageAsItWasWhereverMemoryRunsOut) {
    for (const InPlace& operation : kInPlace)
        for (const MakeImage make : kSomeImages) expect_untouched_without_memory(operation, make);
}

TEST(Operations, InNewFormGiveNullWhereverMemoryRunsOut) {
    for (const NewForm& operation : kNewForms)
        for (const MakeImage make : kSomeImages) expect_null_without_memory(operation, make);
}

TEST(Operations, InNewFormMakeWhatTheFormInPlaceMakes) {
    const char* const forms[][2] = {
        {"convolved", "convolve"}, {"convolved_h", "convolve_h"}, {"convolved_v", "convolve_v"},
        {"ranked", "rank"},        {"embossed", "emboss"},        {"colorized", "colorize"},
        {"shifted", "shift"},      {"shrunk", "shrink"},          {"enlarged", "enlarge"},
        {"displaced", "displace"}, {"transformed", "transform"},  {"rotozoomed", "rotozoom"},
        {"polarized", "polarize"}};
    for (const auto& [fresh, place] : forms) {
        const ImagePtr img = some_image();
        const ImagePtr result = owned(named(kNewForms, fresh).run(img.get()));
        named(kInPlace, place).run(img.get());
        EXPECT_EQ(picture_of(result.get()), picture_of(img.get())) << fresh;
    }
}

TEST(Operations, WorkOnLargeImages) {
    const ImagePtr img = make_filled(4096, 4096, kImageGrey | kImageWrap, 65535);
    image_blur_h(img.get(), 1, 1.0);
    image_blur_v(img.get(), 1, 1.0);
    image_rank(img.get(), 0);
    image_levels(img.get(), 7, 0, 65535, 65535, 0);
    image_convolve(img.get(), kKernel, 1, 16.0 / 256.0, 3);
    EXPECT_EQ(img->green[0], 3);
    EXPECT_EQ(img->green[4096 * 4096 - 1], 3);
}
