#include "hosts/offscreen/video_writer.h"

#include "hosts/offscreen/failure.h"
#include "hosts/offscreen/running_order.h"
#include "hosts/offscreen/soundtrack.h"
#include "hosts/offscreen/yuv.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/opt.h>
}

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>

namespace {

struct Kind {
    const char* extension;
    const char* muxer;
    AVCodecID sound;
    AVSampleFormat samples;
};

constexpr Kind kKinds[] = {
    {".mp4", "mp4", AV_CODEC_ID_AAC, AV_SAMPLE_FMT_FLTP},
    {".mkv", "matroska", AV_CODEC_ID_FLAC, AV_SAMPLE_FMT_S16},
    {".mov", "mov", AV_CODEC_ID_PCM_S16LE, AV_SAMPLE_FMT_S16},
};

const Kind* kind_of(const std::string& path) {
    const std::string extension = std::filesystem::path(path).extension().string();
    const auto kind = std::find_if(std::begin(kKinds), std::end(kKinds),
                                   [&](const Kind& known) { return extension == known.extension; });
    return kind == std::end(kKinds) ? nullptr : kind;
}

constexpr std::int64_t kSoundBitRate = 192'000;
constexpr int kPcmBlock = 1024;        // samples per packet where the codec does not say
constexpr int kSecondsBetweenKeys = 2; // so that players can seek

struct CodecDeleter {
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
};
struct PacketDeleter {
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};
using CodecPtr = std::unique_ptr<AVCodecContext, CodecDeleter>;
using PacketPtr = std::unique_ptr<AVPacket, PacketDeleter>;

std::string reason(int error) {
    char text[AV_ERROR_MAX_STRING_SIZE] = "";
    av_strerror(error, text, sizeof text);
    return text;
}

std::int16_t to_s16(float sample) {
    return static_cast<std::int16_t>(std::lrint(std::clamp(sample, -1.0f, 1.0f) * 32767.0f));
}

} // namespace

// The file while it is being written. Destroyed before it is whole, it is removed.
class VideoWriter::File {
public:
    File(const std::string& path, const ShowFrames& frames, int crf)
        : path_(path), provisional_(path + ".part"), kind_(*kind_of(path)), frames_(frames), crf_(crf),
          soundtrack_(frames.rate()), packet_(av_packet_alloc()) {
        if (std::filesystem::is_directory(path_)) check(AVERROR(EISDIR));
        av_log_set_level(AV_LOG_QUIET); // what goes wrong is told in one line, by the caller
        check(packet_ ? 0 : AVERROR(ENOMEM));
        check(avformat_alloc_output_context2(&format_, nullptr, kind_.muxer, provisional_.c_str()));
        const int opened = avio_open(&format_->pb, provisional_.c_str(), AVIO_FLAG_WRITE);
        if (opened < 0) {
            avformat_free_context(format_);
            check(opened);
        }
    }

    ~File() {
        avio_closep(&format_->pb);
        avformat_free_context(format_);
        if (!complete_) std::remove(provisional_.c_str());
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    void take(const Picture& picture) {
        if (!video_) begin(picture);
        check(av_frame_make_writable(video_frame_.get()));
        converter_->convert(picture, *video_frame_);
        video_frame_->pts = pictures_++;
        last_frame_ = picture.info.frame;
        encode(*video_, video_stream_, video_frame_.get());
        soundtrack_.append(picture.info, samples_);
        encode_full_sound_blocks();
    }

    void finish() {
        if (!video_) throw Failure("no picture for " + path_);
        encode(*video_, video_stream_, nullptr);
        if (!samples_.empty()) encode_sound_block(samples_.size() / Soundtrack::kChannels);
        encode(*sound_, sound_stream_, nullptr);
        add_chapters();
        check(av_write_trailer(format_));
        check(avio_closep(&format_->pb));
        if (std::rename(provisional_.c_str(), path_.c_str()) != 0) check(AVERROR(errno));
        complete_ = true;
    }

private:
    void check(int result) const {
        if (result < 0) throw Failure("cannot write " + path_ + ": " + reason(result));
    }

    void begin(const Picture& picture) {
        first_frame_ = picture.info.frame;
        open_video(picture.width, picture.height);
        open_sound();
        av_dict_set(&format_->metadata, "title", "skav", 0);
        AVDictionary* options = nullptr;
        // The index at the front: a player on the net starts at once.
        if (kind_.sound != AV_CODEC_ID_FLAC) av_dict_set(&options, "movflags", "+faststart", 0);
        const int begun = avformat_write_header(format_, &options);
        av_dict_free(&options);
        check(begun);
    }

    CodecPtr make_codec(const AVCodec* codec, const char* name) const {
        if (!codec) {
            throw Failure(std::string("this libavcodec has no encoder for ") + name +
                          " (Debian's has: reinstall libavcodec59)");
        }
        CodecPtr context(avcodec_alloc_context3(codec));
        check(context ? 0 : AVERROR(ENOMEM));
        if (format_->oformat->flags & AVFMT_GLOBALHEADER) context->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
        return context;
    }

    AVStream* add_stream(const AVCodecContext& codec) {
        AVStream* stream = avformat_new_stream(format_, nullptr);
        check(stream ? 0 : AVERROR(ENOMEM));
        stream->time_base = codec.time_base;
        check(avcodec_parameters_from_context(stream->codecpar, &codec));
        return stream;
    }

    void open_video(int width, int height) {
        video_ = make_codec(avcodec_find_encoder_by_name("libx264"), "H.264 (x264)");
        const FrameRate rate = frames_.rate();
        video_->width = width;
        video_->height = height;
        video_->pix_fmt = AV_PIX_FMT_YUV420P;
        video_->time_base = {static_cast<int>(rate.seconds), static_cast<int>(rate.frames)};
        video_->framerate = {static_cast<int>(rate.frames), static_cast<int>(rate.seconds)};
        video_->gop_size = static_cast<int>(std::lrint(kSecondsBetweenKeys * rate.per_second()));
        video_->color_range = AVCOL_RANGE_MPEG;
        video_->color_primaries = AVCOL_PRI_BT709;
        video_->color_trc = AVCOL_TRC_BT709;
        video_->colorspace = AVCOL_SPC_BT709;
        video_->chroma_sample_location = AVCHROMA_LOC_LEFT;
        video_->sample_aspect_ratio = {1, 1};
        check(av_opt_set_double(video_->priv_data, "crf", crf_, 0));
        check(av_opt_set(video_->priv_data, "preset", "medium", 0));
        check(avcodec_open2(video_.get(), nullptr, nullptr));
        video_stream_ = add_stream(*video_);
        video_stream_->avg_frame_rate = video_->framerate;
        converter_ = std::make_unique<YuvConverter>(width, height);
        video_frame_ = make_yuv_frame(width, height);
    }

    void open_sound() {
        sound_ = make_codec(avcodec_find_encoder(kind_.sound), avcodec_get_name(kind_.sound));
        sound_->sample_rate = Soundtrack::kRate;
        sound_->time_base = {1, Soundtrack::kRate};
        av_channel_layout_default(&sound_->ch_layout, Soundtrack::kChannels);
        sound_->sample_fmt = kind_.samples;
        sound_->bit_rate = kSoundBitRate;
        check(avcodec_open2(sound_.get(), nullptr, nullptr));
        sound_block_ = sound_->frame_size > 0 ? sound_->frame_size : kPcmBlock;
        sound_stream_ = add_stream(*sound_);
    }

    void encode_full_sound_blocks() {
        const auto block = static_cast<std::size_t>(sound_block_);
        while (samples_.size() >= block * Soundtrack::kChannels) encode_sound_block(block);
    }

    // Encodes the first `count` samples of each channel, and drops them.
    void encode_sound_block(std::size_t count) {
        AvFramePtr frame(av_frame_alloc());
        check(frame ? 0 : AVERROR(ENOMEM));
        frame->format = kind_.samples;
        frame->sample_rate = Soundtrack::kRate;
        frame->nb_samples = static_cast<int>(count);
        check(av_channel_layout_copy(&frame->ch_layout, &sound_->ch_layout));
        check(av_frame_get_buffer(frame.get(), 0));
        if (kind_.samples == AV_SAMPLE_FMT_FLTP) {
            for (std::size_t channel = 0; channel < Soundtrack::kChannels; ++channel) {
                auto* out = reinterpret_cast<float*>(frame->data[channel]);
                for (std::size_t i = 0; i < count; ++i)
                    out[i] = samples_[i * Soundtrack::kChannels + channel];
            }
        } else {
            auto* out = reinterpret_cast<std::int16_t*>(frame->data[0]);
            std::transform(samples_.begin(),
                           samples_.begin() + static_cast<std::ptrdiff_t>(count * Soundtrack::kChannels), out,
                           to_s16);
        }
        frame->pts = samples_encoded_;
        samples_encoded_ += static_cast<std::int64_t>(count);
        samples_.erase(samples_.begin(),
                       samples_.begin() + static_cast<std::ptrdiff_t>(count * Soundtrack::kChannels));
        encode(*sound_, sound_stream_, frame.get());
    }

    // Null flushes the encoder.
    void encode(AVCodecContext& codec, AVStream* stream, const AVFrame* frame) {
        check(avcodec_send_frame(&codec, frame));
        for (;;) {
            const int received = avcodec_receive_packet(&codec, packet_.get());
            if (received == AVERROR(EAGAIN) || received == AVERROR_EOF) return;
            check(received);
            if (&codec == video_.get()) packet_->duration = 1;
            av_packet_rescale_ts(packet_.get(), codec.time_base, stream->time_base);
            packet_->stream_index = stream->index;
            check(av_interleaved_write_frame(format_, packet_.get()));
        }
    }

    // Where the file's first picture falls into a chapter, that chapter begins with it.
    void add_chapters() {
        const std::int64_t end = last_frame_ + 1;
        for (int i = 0; i < kChapterCount; ++i) {
            const std::int64_t from = std::max(frames_.first_frame_at(kChapters[i].time), first_frame_);
            const bool last = i + 1 == kChapterCount;
            const std::int64_t to = last ? end : std::min(frames_.first_frame_at(kChapters[i + 1].time), end);
            if (from >= to) continue;
            AVChapter* chapter = static_cast<AVChapter*>(av_mallocz(sizeof(AVChapter)));
            check(chapter ? 0 : AVERROR(ENOMEM));
            chapter->id = i + 1;
            chapter->time_base = video_->time_base;
            chapter->start = from - first_frame_;
            chapter->end = to - first_frame_;
            av_dict_set(&chapter->metadata, "title", kChapters[i].name, 0);
            void* chapters =
                av_realloc_array(format_->chapters, format_->nb_chapters + 1, sizeof *format_->chapters);
            check(chapters ? 0 : AVERROR(ENOMEM));
            format_->chapters = static_cast<AVChapter**>(chapters);
            format_->chapters[format_->nb_chapters++] = chapter;
        }
    }

    std::string path_;
    std::string provisional_;
    const Kind& kind_;
    ShowFrames frames_;
    int crf_;
    Soundtrack soundtrack_;
    PacketPtr packet_;
    AVFormatContext* format_ = nullptr;
    bool complete_ = false;

    CodecPtr video_; // null until the first picture
    AVStream* video_stream_ = nullptr;
    std::unique_ptr<YuvConverter> converter_;
    AvFramePtr video_frame_;
    std::int64_t pictures_ = 0;
    std::int64_t first_frame_ = 0;
    std::int64_t last_frame_ = 0;

    CodecPtr sound_;
    AVStream* sound_stream_ = nullptr;
    int sound_block_ = 0;
    std::vector<float> samples_; // heard, not yet encoded
    std::int64_t samples_encoded_ = 0;
};

VideoWriter::VideoWriter(const std::string& path, const ShowFrames& frames, int crf)
    : path_(path), file_(std::make_unique<File>(path, frames, crf)) {}

VideoWriter::~VideoWriter() = default;

void VideoWriter::take(const Picture& picture) { file_->take(picture); }

void VideoWriter::finish() { file_->finish(); }

bool VideoWriter::has_known_extension(const std::string& path) { return kind_of(path) != nullptr; }
