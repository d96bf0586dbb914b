#include <gtest/gtest.h>

#include <vector>

#include "hosts/common/options.h"
#include "hosts/offscreen/options.h"

namespace offscreen {
namespace {

Options parse(std::vector<std::string> words) {
    words.insert(words.begin(), "skav-export");
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    return parse_options(static_cast<int>(words.size()), arguments.data());
}

// The message, or an empty text if the command line is accepted.
std::string complaint(const std::vector<std::string>& words) {
    try {
        parse(words);
        return "";
    } catch (const common::UsageError& error) {
        EXPECT_EQ(std::string(error.what()).find('\n'), std::string::npos);
        return error.what();
    }
}

TEST(Options, AVideoIsTheWholeShowAtSixtyFramesPerSecond) {
    const Options options = parse({"-o", "show.mp4"});
    EXPECT_EQ(options.job, Job::video);
    EXPECT_EQ(options.output.front(), '/');
    EXPECT_EQ(options.from, 0);
    EXPECT_EQ(options.to, common::kShowEnd);
    EXPECT_EQ(options.rate.frames, 60);
    EXPECT_EQ(options.language, common::Language::ask);
    EXPECT_FALSE(options.force);
    EXPECT_FALSE(options.quiet);
}

TEST(Options, AllOptionsAreRead) {
    const Options options =
        parse({"-o", "-", "--format", "rgb", "--from", "10", "--to=1:14.3", "--fps", "30", "--scale", "3",
               "--supersample", "2", "--language", "en", "--data", "music", "--force", "-q"});
    EXPECT_EQ(options.job, Job::stream);
    EXPECT_EQ(options.format, StreamFormat::rgb);
    EXPECT_EQ(options.from, 10 * common::kSecond);
    EXPECT_EQ(options.to, 74'300'000);
    EXPECT_EQ(options.scale, 3);
    EXPECT_EQ(options.supersample, 2);
    EXPECT_EQ(options.language, common::Language::english);
    EXPECT_EQ(options.data, "music");
    EXPECT_TRUE(options.force);
    EXPECT_TRUE(options.quiet);
}

TEST(Options, AVideoIsEncodedFastUnlessToldOtherwise) {
    EXPECT_EQ(parse({"-o", "show.mp4"}).quality.crf, 18);
    EXPECT_STREQ(parse({"-o", "show.mp4"}).quality.preset, "veryfast");
    const Options options = parse({"-o", "show.mp4", "--crf", "23", "--preset", "slower"});
    EXPECT_EQ(options.quality.crf, 23);
    EXPECT_STREQ(options.quality.preset, "slower");
}

TEST(Options, StillsKeepTheirOrderAndTheSlashOfTheirFolder) {
    const Options options = parse({"--still", "12.5", "--still", "loading", "-o", "pictures/"});
    EXPECT_EQ(options.job, Job::stills);
    EXPECT_EQ(options.stills, (std::vector<common::ShowTime>{12'500'000, common::kLoadingTime}));
    EXPECT_EQ(options.output.back(), '/');
}

TEST(Options, ExtensionsMayBeInCapitals) {
    EXPECT_EQ(parse({"-o", "show.MP4"}).job, Job::video);
    EXPECT_EQ(parse({"--still", "3", "-o", "a.PNG"}).job, Job::stills);
}

TEST(Options, WhatMakesNoSenseIsNamed) {
    const std::pair<std::vector<std::string>, const char*> cases[] = {
        {{}, "-o is missing"},
        {{"-o", "show.avi"}, "show.avi"},
        {{"-o", "show"}, "none of .mp4"},
        {{"--still", "3", "-o", "a.jpg"}, "a.jpg"},
        {{"--sheet", "a.jpg"}, "a.jpg"},
        {{"-o", "show.mp4", "--from", "soon"}, "'soon'"},
        {{"-o", "show.mp4", "--from", "-3"}, "'-3'"},
        {{"-o", "show.mp4", "--to", "163"}, "ends at 162"},
        {{"-o", "show.mp4", "--from", "20", "--to", "20"}, "nothing lies between"},
        {{"-o", "show.mp4", "--fps", "0"}, "--fps"},
        {{"-o", "show.mp4", "--scale", "5"}, "--scale"},
        {{"-o", "show.mp4", "--scale", "2.5"}, "--scale"},
        {{"-o", "show.mp4", "--supersample", "3"}, "--supersample"},
        {{"-o", "show.mp4", "--crf", "52"}, "--crf"},
        {{"-o", "show.mp4", "--preset", "quick"}, "'quick' is not ultrafast or superfast or veryfast"},
        {{"-o", "show.mp4", "--language", "fr"}, "fr"},
        {{"-o", "show.mp4", "--format", "rgb"}, "--format"},
        {{"-o", "-", "--format", "bmp"}, "bmp"},
        {{"-o", "-", "--still", "3"}, "--still"},
        {{"-o", "-", "--crf", "3"}, "--crf"},
        {{"-o", "-", "--preset", "slow"}, "--preset"},
        {{"--still", "3"}, "-o is missing"},
        {{"--still", "200", "-o", "a.png"}, "ends at 162"},
        {{"--still", "3", "--sheet", "a.png"}, "one at a time"},
        {{"--sheet", "a.png", "-o", "b.png"}, "-o"},
        {{"--chapters", "-o", "b.mp4"}, "-o"},
        {{"--chapters", "--sheet", "a.png"}, "one at a time"},
        {{"--sheet", "a.png", "--from", "3"}, "range"},
        {{"-o", "show.mp4", "extra"}, "'extra'"},
        {{"-o"}, "'-o' needs a value"},
        {{"--still"}, "'--still' needs a value"},
        {{"--nonsense"}, "--nonsense"},
        {{"-z"}, "-z"},
    };
    for (const auto& [words, named] : cases) {
        const std::string message = complaint(words);
        EXPECT_NE(message.find(named), std::string::npos) << named << ": " << message;
    }
}

} // namespace
} // namespace offscreen
