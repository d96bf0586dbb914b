// Video files, through libavformat.
extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/audio_fifo.h>
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
}

#include <cmath>
#include <optional>

#include "hosts/common/music.h"
#include "hosts/offscreen/failure.h"
#include "hosts/offscreen/frames/chapters.h"
#include "hosts/offscreen/output/output_file.h"
#include "hosts/offscreen/output/sink.h"
#include "hosts/offscreen/output/yuv.h"

namespace offscreen {

namespace {

struct Container {
    const char* extension;
    const char* muxer;
    AVCodecID sound;
    AVSampleFormat samples;
};

constexpr Container kContainers[] = {
    {".mp4", "mp4", AV_CODEC_ID_AAC, AV_SAMPLE_FMT_FLTP},
    {".mkv", "matroska", AV_CODEC_ID_FLAC, AV_SAMPLE_FMT_S16},
    {".mov", "mov", AV_CODEC_ID_PCM_S16LE, AV_SAMPLE_FMT_S16},
};

// Null: none has the extension of `path`.
const Container* container_of(const std::string& path) {
    const std::string extension = extension_of(path);
    for (const Container& container : kContainers) {
        if (extension == container.extension) return &container;
    }
    return nullptr;
}

constexpr std::int64_t kSoundBitRate = 192'000;
constexpr int kPcmBlock = 1024;              // samples per packet where the codec does not say
constexpr std::int64_t kLeastTicks = 10'000; // per second, in the header of .mp4 and .mov
constexpr int kSecondsBetweenKeys = 2;       // so that players can seek

// What libav* allocates, freed by its own function.
template <auto free>
struct Deleter {
    template <typename T>
    void operator()(T* object) const {
        free(&object);
    }
};
using CodecPtr = std::unique_ptr<AVCodecContext, Deleter<avcodec_free_context>>;
using PacketPtr = std::unique_ptr<AVPacket, Deleter<av_packet_free>>;
using ResamplerPtr = std::unique_ptr<SwrContext, Deleter<swr_free>>;

struct FormatDeleter {
    void operator()(AVFormatContext* format) const {
        avio_closep(&format->pb);
        avformat_free_context(format);
    }
};
struct FifoDeleter {
    void operator()(AVAudioFifo* fifo) const { av_audio_fifo_free(fifo); }
};

// The samples that are heard while frames are on screen.
class Soundtrack {
public:
    explicit Soundtrack(common::FrameRate rate) : rate_(rate) {}

    // The samples (left, right, left, ...) that are heard while the frame is on screen: from its first moment up to
    // the next frame's, counted from the start of the show, so that the sound of ranges joins to the sample. Silence
    // where nothing plays, and from where a file ends or breaks off. Throws Failure when a file cannot be opened.
    const std::vector<float>& samples_of(const PictureInfo& frame) {
        const std::int64_t begin = samples_before(frame.frame);
        const auto count = static_cast<std::size_t>(samples_before(frame.frame + 1) - begin);
        samples_.assign(count * common::kSoundChannels, 0.0f);
        if (!frame.sound) return samples_;
        if (frame.sound != piece_) open(frame.sound);

        const std::int64_t position = begin - samples_before(piece_->from_frame);
        if (position >= music_->length()) return samples_;
        if (music_->position() != position) music_->seek(position);
        music_->read(samples_.data(), count);
        return samples_;
    }

private:
    void open(const std::shared_ptr<const common::Played>& piece) {
        common::Mp3Error error = common::Mp3Error::none;
        music_ = common::Music::open(piece->file, error);
        if (!music_) throw Failure("cannot decode the music in " + piece->file);
        piece_ = piece;
    }

    std::int64_t samples_before(std::int64_t frame) const {
        return frame * common::kSoundRate * rate_.seconds / rate_.frames;
    }

    common::FrameRate rate_;
    std::shared_ptr<const common::Played> piece_;
    std::unique_ptr<common::Music> music_;
    std::vector<float> samples_;
};

class Video : public Sink {
public:
    Video(const std::string& path, const common::ShowFrames& frames, const VideoQuality& quality, bool force)
        : path_(path), replace_(check_outputs({path}, force)), container_(*container_of(path)),
          frames_(frames), quality_(quality), soundtrack_(frames.rate()) {
        av_log_set_level(AV_LOG_QUIET); // errors are reported by check
    }

    void take(const Picture& picture) override {
        if (!video_) begin(picture);
        check(av_frame_make_writable(video_frame_.get()));
        converter_->convert(picture, *video_frame_);
        video_frame_->pts = pictures_++;
        last_frame_ = picture.info.frame;
        encode(*video_, video_stream_, video_frame_.get());

        const std::vector<float>& samples = soundtrack_.samples_of(picture.info);
        void* data = const_cast<float*>(samples.data());
        check(av_audio_fifo_write(sound_fifo_.get(), &data,
                                  static_cast<int>(samples.size()) / common::kSoundChannels));
        while (av_audio_fifo_size(sound_fifo_.get()) >= sound_block_) encode_sound_block(sound_block_);
    }

    void finish() override {
        encode(*video_, video_stream_, nullptr);
        if (const int rest = av_audio_fifo_size(sound_fifo_.get()); rest > 0) encode_sound_block(rest);
        encode(*sound_, sound_stream_, nullptr);
        add_chapters();
        check(av_write_trailer(format_.get()));
        check(avio_closep(&format_->pb));
        file_->commit();
        complete_ = true;
    }

    void finish_early() override { finish(); }

    std::string kept(std::int64_t pictures) const override {
        return complete_ ? path_ + " holds " + count_of_pictures(pictures) : Sink::kept(0);
    }

private:
    // Throws Failure for a negative result of libav*.
    void check(int result) const {
        if (result >= 0) return;
        char reason[AV_ERROR_MAX_STRING_SIZE] = "";
        av_strerror(result, reason, sizeof reason);
        throw Failure("cannot write " + path_ + ": " + reason);
    }

    // Opens the file and the encoders and writes the header; the first picture tells the size.
    void begin(const Picture& picture) {
        packet_.reset(av_packet_alloc());
        check(packet_ ? 0 : AVERROR(ENOMEM));
        file_.emplace(path_, replace_);
        AVFormatContext* format = nullptr;
        check(avformat_alloc_output_context2(&format, nullptr, container_.muxer, file_->name().c_str()));
        format_.reset(format);
        check(avio_open(&format_->pb, file_->name().c_str(), AVIO_FLAG_WRITE));

        first_frame_ = picture.info.frame;
        open_video(picture.width, picture.height);
        open_sound();
        av_dict_set(&format_->metadata, "title", "skav", 0);
        AVDictionary* options = nullptr;
        if (container_.sound != AV_CODEC_ID_FLAC) {
            // The index at the front: a player on the net starts at once.
            av_dict_set(&options, "movflags", "+faststart", 0);
            // Rounded to milliseconds, the default, a part's length would move the frames of the part joined to it.
            av_dict_set_int(&options, "movie_timescale", ticks_per_second(), 0);
        }
        const int begun = avformat_write_header(format_.get(), &options);
        av_dict_free(&options);
        check(begun);
    }

    // A unit of time in which every frame's time is whole, fine enough for the sound.
    std::int64_t ticks_per_second() const {
        std::int64_t ticks = frames_.rate().frames;
        while (ticks < kLeastTicks) ticks *= 2;
        return ticks;
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
        AVStream* stream = avformat_new_stream(format_.get(), nullptr);
        check(stream ? 0 : AVERROR(ENOMEM));
        stream->time_base = codec.time_base;
        check(avcodec_parameters_from_context(stream->codecpar, &codec));
        return stream;
    }

    void open_video(int width, int height) {
        video_ = make_codec(avcodec_find_encoder_by_name("libx264"), "H.264 (x264)");
        const common::FrameRate rate = frames_.rate();
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
        check(av_opt_set_double(video_->priv_data, "crf", quality_.crf, 0));
        check(av_opt_set(video_->priv_data, "preset", quality_.preset, 0));
        check(avcodec_open2(video_.get(), nullptr, nullptr));
        video_stream_ = add_stream(*video_);
        video_stream_->avg_frame_rate = video_->framerate;
        converter_ = std::make_unique<YuvConverter>(width, height);
        video_frame_ = make_yuv_frame(width, height);
    }

    void open_sound() {
        sound_ = make_codec(avcodec_find_encoder(container_.sound), avcodec_get_name(container_.sound));
        sound_->sample_rate = common::kSoundRate;
        sound_->time_base = {1, common::kSoundRate};
        av_channel_layout_default(&sound_->ch_layout, common::kSoundChannels);
        sound_->sample_fmt = container_.samples;
        sound_->bit_rate = kSoundBitRate;
        check(avcodec_open2(sound_.get(), nullptr, nullptr));
        sound_block_ = sound_->frame_size > 0 ? sound_->frame_size : kPcmBlock;
        sound_stream_ = add_stream(*sound_);

        sound_fifo_.reset(av_audio_fifo_alloc(AV_SAMPLE_FMT_FLT, common::kSoundChannels, common::kSoundRate));
        check(sound_fifo_ ? 0 : AVERROR(ENOMEM));
        SwrContext* resampler = nullptr;
        check(swr_alloc_set_opts2(&resampler, &sound_->ch_layout, container_.samples, common::kSoundRate,
                                  &sound_->ch_layout, AV_SAMPLE_FMT_FLT, common::kSoundRate, 0, nullptr));
        resampler_.reset(resampler);
        check(swr_init(resampler_.get()));
    }

    AvFramePtr make_sound_frame(AVSampleFormat format, int count) const {
        AvFramePtr frame(av_frame_alloc());
        check(frame ? 0 : AVERROR(ENOMEM));
        frame->format = format;
        frame->sample_rate = common::kSoundRate;
        frame->nb_samples = count;
        check(av_channel_layout_copy(&frame->ch_layout, &sound_->ch_layout));
        check(av_frame_get_buffer(frame.get(), 0));
        return frame;
    }

    // Encodes the oldest `count` samples of each channel.
    void encode_sound_block(int count) {
        const AvFramePtr heard = make_sound_frame(AV_SAMPLE_FMT_FLT, count);
        const AvFramePtr frame = make_sound_frame(container_.samples, count);
        check(av_audio_fifo_read(sound_fifo_.get(), reinterpret_cast<void**>(heard->data), count));
        check(swr_convert_frame(resampler_.get(), frame.get(), heard.get()));
        frame->pts = samples_encoded_;
        samples_encoded_ += count;
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
            check(av_interleaved_write_frame(format_.get(), packet_.get()));
        }
    }

    void add_chapters() {
        for (const VideoChapter& span : chapters_of(frames_, first_frame_, last_frame_ + 1)) {
            AVChapter* chapter = static_cast<AVChapter*>(av_mallocz(sizeof(AVChapter)));
            check(chapter ? 0 : AVERROR(ENOMEM));
            chapter->id = static_cast<std::int64_t>(format_->nb_chapters) + 1;
            chapter->time_base = video_->time_base;
            chapter->start = span.begin;
            chapter->end = span.end;
            av_dict_set(&chapter->metadata, "title", span.name, 0);
            void* chapters =
                av_realloc_array(format_->chapters, format_->nb_chapters + 1, sizeof *format_->chapters);
            check(chapters ? 0 : AVERROR(ENOMEM));
            format_->chapters = static_cast<AVChapter**>(chapters);
            format_->chapters[format_->nb_chapters++] = chapter;
        }
    }

    std::string path_;
    bool replace_;
    const Container& container_;
    common::ShowFrames frames_;
    VideoQuality quality_;
    Soundtrack soundtrack_;
    bool complete_ = false;

    // Made by begin.
    PacketPtr packet_;
    std::optional<OutputFile> file_;
    std::unique_ptr<AVFormatContext, FormatDeleter> format_;

    CodecPtr video_;
    AVStream* video_stream_ = nullptr;
    std::unique_ptr<YuvConverter> converter_;
    AvFramePtr video_frame_;
    std::int64_t pictures_ = 0;
    std::int64_t first_frame_ = 0;
    std::int64_t last_frame_ = 0;

    CodecPtr sound_;
    AVStream* sound_stream_ = nullptr;
    int sound_block_ = 0;                                  // samples in a packet
    std::unique_ptr<AVAudioFifo, FifoDeleter> sound_fifo_; // heard, not yet encoded
    ResamplerPtr resampler_;                               // to the encoder's sample format; same rate
    std::int64_t samples_encoded_ = 0;
};

} // namespace

std::unique_ptr<Sink> make_video(const std::string& path, const common::ShowFrames& frames,
                                 const VideoQuality& quality, bool force) {
    return std::make_unique<Video>(path, frames, quality, force);
}

bool is_video_name(const std::string& path) { return container_of(path) != nullptr; }

} // namespace offscreen
