// Colour pixels: the decoded frame, whatever it is, scaled by nothing into 24 bits.
#include "peer.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/imgutils.h>
#include <libswscale/swscale.h>
}

static bool Convert(const AVFrame* pFrame) {
    constexpr AVPixelFormat SHOWN = AV_PIX_FMT_BGR24;
    unsigned char* data[4] = {};
    int sizes[4] = {};
    const int width = pFrame->width;
    const int height = pFrame->height;
    if (av_image_alloc(data, sizes, width, height, SHOWN, 32) < 0) return false;
    SwsContext* const context = sws_getContext(width, height, static_cast<AVPixelFormat>(pFrame->format),
                                               width, height, SHOWN, SWS_POINT, nullptr, nullptr, nullptr);
    const bool done =
        context && sws_scale(context, pFrame->data, pFrame->linesize, 0, height, data, sizes) == height;
    sws_freeContext(context);
    av_freep(&data[0]);
    return done;
}

static bool Decode(AVFormatContext* pFormat) {
    if (pFormat->nb_streams == 0) return false;
    const AVCodecParameters* const parameters = pFormat->streams[0]->codecpar;
    const AVCodec* const codec = avcodec_find_decoder(parameters->codec_id);
    if (!codec) return false;
    AVCodecContext* decoder = avcodec_alloc_context3(codec);
    AVPacket* packet = av_packet_alloc();
    AVFrame* frame = av_frame_alloc();
    decoder->thread_count = 1;
    const bool decoded = avcodec_parameters_to_context(decoder, parameters) >= 0 &&
                         avcodec_open2(decoder, codec, nullptr) >= 0 && av_read_frame(pFormat, packet) >= 0 &&
                         avcodec_send_packet(decoder, packet) >= 0 &&
                         avcodec_receive_frame(decoder, frame) >= 0;
    const bool done = decoded && Convert(frame);
    av_frame_free(&frame);
    av_packet_free(&packet);
    avcodec_free_context(&decoder);
    return done;
}

int main(int argc, char** argv) {
    av_log_set_level(AV_LOG_QUIET);
    return RunPeer(argc, argv, [](const char* pszPath) {
        AVFormatContext* format = nullptr;
        if (avformat_open_input(&format, pszPath, nullptr, nullptr) < 0) return false;
        const bool done = Decode(format);
        avformat_close_input(&format);
        return done;
    });
}
