#include "formats.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace examples::resample {
namespace {

// Those that have several extensions, and extensions of several containers.
constexpr std::pair<const char*, int> kExtensions[] = {
    {"wav", SF_FORMAT_WAV},  {"aif", SF_FORMAT_AIFF},  {"aifc", SF_FORMAT_AIFF},
    {"snd", SF_FORMAT_AU},   {"ogg", SF_FORMAT_OGG},   {"oga", SF_FORMAT_OGG},
    {"opus", SF_FORMAT_OGG}, {"nist", SF_FORMAT_NIST}, {"mat", SF_FORMAT_MAT5},
};

// What libsndfile lists, by one of its pairs of commands.
std::vector<SF_FORMAT_INFO> listed(int countCommand, int command) {
    int count = 0;
    sf_command(nullptr, countCommand, &count, sizeof count);
    std::vector<SF_FORMAT_INFO> formats(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
        SF_FORMAT_INFO& format = formats[static_cast<size_t>(i)];
        format.format = i;
        sf_command(nullptr, command, &format, sizeof format);
    }
    return formats;
}

// The codings to be tried in place of one that a container does not know, the best first.
std::vector<int> substitutes(int coding) {
    switch (coding) {
        case SF_FORMAT_FLOAT:
        case SF_FORMAT_DOUBLE:
            return {SF_FORMAT_DOUBLE, SF_FORMAT_FLOAT, SF_FORMAT_PCM_24};
        case SF_FORMAT_PCM_24:
        case SF_FORMAT_PCM_32:
        case SF_FORMAT_ALAC_20:
        case SF_FORMAT_ALAC_24:
        case SF_FORMAT_ALAC_32:
            return {SF_FORMAT_PCM_24, SF_FORMAT_PCM_32};
        case SF_FORMAT_PCM_S8:
        case SF_FORMAT_PCM_U8:
            return {SF_FORMAT_PCM_U8, SF_FORMAT_PCM_S8};
        default:
            return {};
    }
}

}  // namespace

int containerFor(const std::filesystem::path& path) {
    std::string extension = path.extension().string();
    if (extension.empty()) return 0;
    extension.erase(0, 1);
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    for (const auto& [known, container] : kExtensions)
        if (extension == known) return container;
    for (const SF_FORMAT_INFO& major : listed(SFC_GET_FORMAT_MAJOR_COUNT, SFC_GET_FORMAT_MAJOR))
        if (major.extension != nullptr && extension == major.extension) return major.format;
    return 0;
}

int closestFormat(int container, int coding, int channels, int rate) {
    std::vector<int> codings = {coding};
    for (const int other : substitutes(coding)) codings.push_back(other);
    for (const int other : {SF_FORMAT_PCM_16, SF_FORMAT_VORBIS}) codings.push_back(other);
    for (const SF_FORMAT_INFO& other : listed(SFC_GET_FORMAT_SUBTYPE_COUNT, SFC_GET_FORMAT_SUBTYPE))
        codings.push_back(other.format);
    SF_INFO info = {};
    info.channels = channels;
    info.samplerate = rate;
    for (const int candidate : codings) {
        info.format = container | candidate;
        if (sf_format_check(&info)) return info.format;
    }
    return 0;
}

int integerBits(int format) {
    switch (format & SF_FORMAT_SUBMASK) {
        case SF_FORMAT_FLOAT:
        case SF_FORMAT_DOUBLE:
        case SF_FORMAT_VORBIS:
        case SF_FORMAT_OPUS:
        case SF_FORMAT_MPEG_LAYER_I:
        case SF_FORMAT_MPEG_LAYER_II:
        case SF_FORMAT_MPEG_LAYER_III:
            return 0;
        case SF_FORMAT_PCM_S8:
        case SF_FORMAT_PCM_U8:
        case SF_FORMAT_DPCM_8:
            return 8;
        case SF_FORMAT_DWVW_12:
            return 12;
        case SF_FORMAT_ALAC_20:
            return 20;
        case SF_FORMAT_PCM_24:
        case SF_FORMAT_ALAC_24:
        case SF_FORMAT_DWVW_24:
            return 24;
        case SF_FORMAT_PCM_32:
        case SF_FORMAT_ALAC_32:
            return 32;
        default:
            return 16;
    }
}

}  // namespace examples::resample
