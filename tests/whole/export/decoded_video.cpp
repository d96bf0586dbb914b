#include "tests/whole/export/decoded_video.h"

#include <gtest/gtest.h>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/pixdesc.h>
}

#include <cmath>
#include <memory>

namespace {

struct FormatDeleter {
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
};
struct CodecDeleter {
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
};
using CodecPtr = std::unique_ptr<AVCodecContext, CodecDeleter>;

CodecPtr open_decoder(const AVStream& stream) {
    const AVCodec* codec = avcodec_find_decoder(stream.codecpar->codec_id);
    CodecPtr context(avcodec_alloc_context3(codec));
    avcodec_parameters_to_context(context.get(), stream.codecpar);
    context->pkt_timebase = stream.time_base;
    EXPECT_EQ(avcodec_open2(context.get(), codec, nullptr), 0);
    return context;
}

void take_picture(const AVFrame& frame, double time, DecodedVideo& video) {
    std::uint64_t sum = 14695981039346656037u; // FNV-1a
    for (int y = 0; y < frame.height; ++y) {
        for (int x = 0; x < frame.width; ++x) {
            sum = (sum ^ frame.data[0][y * frame.linesize[0] + x]) * 1099511628211u;
        }
    }
    video.frame_times.push_back(time);
    video.frame_sums.push_back(sum);
}

void take_sound(const AVFrame& frame, double time, DecodedVideo& video) {
    auto at = static_cast<std::int64_t>(std::llround(time * 44100));
    // Matroska tells times in milliseconds: what joins to within one joins to the sample.
    const auto end = static_cast<std::int64_t>(video.left.size());
    if (std::abs(at - end) <= 45) at = end;
    for (int i = 0; i < frame.nb_samples; ++i) {
        if (at + i < 0) continue;
        const auto index = static_cast<std::size_t>(at + i);
        if (video.left.size() <= index) video.left.resize(index + 1);
        video.left[index] = frame.format == AV_SAMPLE_FMT_S16
                                ? reinterpret_cast<const std::int16_t*>(frame.data[0])[2 * i] / 32768.0f
                                : reinterpret_cast<const float*>(frame.data[0])[i];
    }
}

} // namespace

DecodedVideo decode_video(const std::string& path) {
    DecodedVideo video;
    AVFormatContext* opened = nullptr;
    const int result = avformat_open_input(&opened, path.c_str(), nullptr, nullptr);
    EXPECT_EQ(result, 0) << path;
    if (result != 0) return video;
    const std::unique_ptr<AVFormatContext, FormatDeleter> format(opened);
    EXPECT_GE(avformat_find_stream_info(format.get(), nullptr), 0);
    video.duration = static_cast<double>(format->duration) / AV_TIME_BASE;
    for (unsigned i = 0; i < format->nb_chapters; ++i) {
        const AVChapter& chapter = *format->chapters[i];
        const double unit = av_q2d(chapter.time_base);
        const AVDictionaryEntry* title = av_dict_get(chapter.metadata, "title", nullptr, 0);
        video.chapters.push_back({static_cast<double>(chapter.start) * unit,
                                  static_cast<double>(chapter.end) * unit, title ? title->value : ""});
    }
    const int pictures = av_find_best_stream(format.get(), AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    const int sound = av_find_best_stream(format.get(), AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
    EXPECT_GE(pictures, 0);
    EXPECT_GE(sound, 0);
    if (pictures < 0 || sound < 0) return video;

    const AVCodecParameters& parameters = *format->streams[pictures]->codecpar;
    video.video_codec = avcodec_get_name(parameters.codec_id);
    video.sound_codec = avcodec_get_name(format->streams[sound]->codecpar->codec_id);
    video.width = parameters.width;
    video.height = parameters.height;
    video.colours = std::string(av_color_range_name(parameters.color_range)) + " " +
                    av_color_space_name(parameters.color_space) + " " +
                    av_color_primaries_name(parameters.color_primaries) + " " +
                    av_color_transfer_name(parameters.color_trc) + " " +
                    av_chroma_location_name(parameters.chroma_location);

    CodecPtr decoders[2] = {open_decoder(*format->streams[pictures]), open_decoder(*format->streams[sound])};
    const int streams[2] = {pictures, sound};
    AVFrame* frame = av_frame_alloc();
    AVPacket* packet = av_packet_alloc();
    const auto drain = [&](int which) {
        const double unit = av_q2d(format->streams[streams[which]]->time_base);
        while (avcodec_receive_frame(decoders[which].get(), frame) == 0) {
            const double time = static_cast<double>(frame->best_effort_timestamp) * unit;
            which == 0 ? take_picture(*frame, time, video) : take_sound(*frame, time, video);
        }
    };
    while (av_read_frame(format.get(), packet) == 0) {
        for (int which = 0; which < 2; ++which) {
            if (packet->stream_index != streams[which]) continue;
            EXPECT_EQ(avcodec_send_packet(decoders[which].get(), packet), 0);
            drain(which);
        }
        av_packet_unref(packet);
    }
    for (int which = 0; which < 2; ++which) {
        avcodec_send_packet(decoders[which].get(), nullptr);
        drain(which);
    }
    av_packet_free(&packet);
    av_frame_free(&frame);
    return video;
}
