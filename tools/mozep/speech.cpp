// mozep speech: sound files to the codes of speech codecs and back.
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "code_packing.h"
#include "commands.h"
#include "full_scale.h"
#include "output_file.h"
#include "progress.h"
#include "rational_resampler.h"
#include "sound_file.h"
#include "speech_codec.h"
#include "wav_output.h"

namespace mozep_program {
namespace {

constexpr int kRate = 8000;
constexpr std::size_t kBlock = 4000;  // half a second

constexpr const char* kFormats =
    "Sound is coded at 8000 Hz, resampled where it has another rate, and as the mean of its "
    "channels;\n"
    "a warning says so. Code files have no header.\n"
    "alaw and ulaw: G.711, a byte a sample as on the line. g726-16 to g726-40: G.726 at 16 to\n"
    "40 kbit/s, codes of 2 to 5 bits packed as in RFC 3551, the first in the lowest bits. A last\n"
    "byte that the codes do not fill is filled up with zeros, which decode to up to three samples\n"
    "more than were coded. g728: G.728 at 16 kbit/s, codes of 10 bits for 5 samples each, four of\n"
    "them in 5 bytes as in RFC 3551, the first in the highest bits; the last four are filled up "
    "with\n"
    "silence, up to 19 samples.";

struct Options {
    std::string action, codec, in, out;
    bool unpacked = false, plain = false;
};

// One code in as many bytes as it takes, the lowest first.
std::vector<Zep8u> unpackedBytes(const std::vector<Zep16u>& codes, int bits) {
    std::vector<Zep8u> bytes;
    for (const unsigned code : codes)
        for (int shift = 0; shift < bits; shift += 8)
            bytes.push_back(static_cast<Zep8u>(code >> shift));
    return bytes;
}

// Samples to bytes of codes, in frames that the blocks do not have to respect.
class CodeWriter {
public:
    CodeWriter(const Options& options, const SpeechCodec& codec)
        : codec_(codec),
          encoder_(makeEncoder(codec)),
          packer_(codec.bits, codec.order),
          unpacked_(options.unpacked),
          out_(options.out == "-" ? "" : options.out, OutputFile::Existing::Replace) {}

    void write(const std::vector<Zep16s>& samples) {
        waiting_.insert(waiting_.end(), samples.begin(), samples.end());
        const auto frame = static_cast<std::size_t>(codec_.frameSamples());
        const auto whole =
            waiting_.begin() + static_cast<std::ptrdiff_t>(waiting_.size() / frame * frame);
        const std::vector<Zep16u> codes = encoder_({waiting_.begin(), whole});
        waiting_.erase(waiting_.begin(), whole);
        std::vector<Zep8u> bytes;
        if (unpacked_)
            bytes = unpackedBytes(codes, codec_.bits);
        else
            packer_.pack(codes, bytes);
        out_.write(bytes.data(), bytes.size());
    }

    // Fills the last frame up with silence.
    void finish() {
        if (!waiting_.empty())
            write(std::vector<Zep16s>(static_cast<std::size_t>(codec_.frameSamples()) -
                                      waiting_.size()));
        std::vector<Zep8u> last;
        packer_.finish(last);
        out_.write(last.data(), last.size());
    }

    void commit() { out_.commit(); }

private:
    const SpeechCodec& codec_;
    SpeechEncoder encoder_;
    CodePacker packer_;
    bool unpacked_;
    OutputFile out_;
    std::vector<Zep16s> waiting_;
};

// What was done to the sound before it was coded, or nothing.
std::string changes(const SoundFile& in) {
    const std::string mean = "the mean of its " + std::to_string(in.channels()) + " channels",
                      resampled = "resampled from " + std::to_string(in.rate()) + " to " +
                                  std::to_string(kRate) + " Hz";
    if (in.channels() == 1) return in.rate() == kRate ? "" : "was " + resampled;
    return in.rate() == kRate ? mean + " was coded" : mean + ", " + resampled + ", was coded";
}

void encode(const Options& options, const SpeechCodec& codec) {
    SoundFile in(options.in, 0);
    RationalResampler resampler(in.rate(), kRate);
    CodeWriter out(options, codec);
    Progress progress(in.declaredFrames());
    std::vector<float> block(kBlock), resampled;
    long long limited = 0;
    const auto code = [&] {
        if (resampled.empty()) return;
        std::vector<Zep16s> samples(resampled.size());
        limited += toInt16(resampled.data(), samples.data(), static_cast<int>(resampled.size()));
        out.write(samples);
        resampled.clear();
    };
    while (const std::size_t count = in.read(block)) {
        resampler.add({block.data(), count}, resampled);
        code();
        progress.reached(static_cast<double>(in.framesRead()));
    }
    if (in.framesRead() == 0) throw Failure(options.in + ": holds no samples");
    resampler.finish(resampled);
    code();
    out.finish();
    const std::string shortfall = in.shortfall(), changed = changes(in);
    out.commit();
    if (!shortfall.empty()) warn("speech", options.in + ": is cut short: " + shortfall);
    if (!changed.empty()) warn("speech", options.in + ": " + changed);
    if (limited > 0)
        warn("speech", options.in + ": " + std::to_string(limited) +
                           " samples beyond full scale were limited");
}

std::vector<Zep8u> readAll(const std::string& name) {
    struct stat status {};
    if (stat(name.c_str(), &status) != 0) throw Failure(name + ": " + std::strerror(errno));
    if (S_ISDIR(status.st_mode)) throw Failure(name + ": is a directory");
    std::ifstream file(name, std::ios::binary);
    if (!file) throw Failure(name + ": " + std::strerror(errno));
    std::vector<Zep8u> bytes{std::istreambuf_iterator<char>(file), {}};
    if (file.bad()) throw Failure(name + ": cannot be read");
    if (bytes.empty()) throw Failure(name + ": is empty");
    return bytes;
}

std::vector<Zep16u> readUnpacked(const std::string& name, const std::vector<Zep8u>& bytes,
                                 int bits) {
    const std::size_t codeBytes = bits > 8 ? 2 : 1;
    std::vector<Zep16u> codes;
    for (std::size_t at = 0; at + codeBytes <= bytes.size(); at += codeBytes) {
        const unsigned code = bytes[at] | (codeBytes > 1 ? bytes[at + 1] << 8U : 0U);
        if (code >> bits != 0)
            throw Failure(name + ": byte " + std::to_string(at) + " is no code of " +
                          std::to_string(bits) + " bits");
        codes.push_back(static_cast<Zep16u>(code));
    }
    if (bytes.size() % codeBytes != 0) throw Failure(name + ": ends within a code");
    return codes;
}

std::vector<Zep16u> readCodes(const Options& options, const SpeechCodec& codec) {
    const std::vector<Zep8u> bytes = readAll(options.in);
    std::vector<Zep16u> codes = options.unpacked ? readUnpacked(options.in, bytes, codec.bits)
                                                 : unpackCodes(bytes, codec.bits, codec.order);
    if (codes.empty()) throw Failure(options.in + ": holds no whole code");
    return codes;
}

void decode(const Options& options, const SpeechCodec& codec) {
    constexpr auto kFormat = WavOutput::Format::Int16;
    const std::vector<Zep16u> codes = readCodes(options, codec);
    const auto count = static_cast<long long>(codes.size());
    if (count > WavOutput::longest(kFormat) / codec.codeSamples)
        throw Failure(options.in + ": is longer than a WAV file can be");
    WavOutput out(options.out, kFormat, kRate, count * codec.codeSamples);
    const SpeechDecoder decoder = makeDecoder(codec, !options.plain);
    Progress progress(static_cast<double>(count));
    for (auto next = codes.begin(); next != codes.end();) {
        const auto end = next + std::min<std::ptrdiff_t>(kBlock, codes.end() - next);
        out.write(decoder({next, end}));
        next = end;
        progress.reached(static_cast<double>(next - codes.begin()));
    }
    out.commit();
}

void run(const Options& options) {
    const SpeechCodec& codec = speechCodec(options.codec);
    const bool encodes = options.action == "encode";
    if (options.plain && (encodes || codec.kind != SpeechCodec::Kind::G728))
        throw CLI::ValidationError("--no-postfilter", "only decoding of g728 has one");
    encodes ? encode(options, codec) : decode(options, codec);
}

}  // namespace

void addSpeech(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    CLI::App* command = app.add_subcommand(
        "speech", "Code a sound file as G.711, G.726 or G.728, or decode such codes to a WAV file");
    command->add_option("ACTION", options->action, "what to do")
        ->check(CLI::IsMember({"encode", "decode"}))
        ->required();
    command->add_option("IN", options->in, "sound file to encode, or file of codes to decode")
        ->required();
    command
        ->add_option("OUT", options->out,
                     "file to write or replace: codes, or a WAV file of 16 bits; - is the standard "
                     "output")
        ->required();
    command->add_option("--codec", options->codec, "codec")
        ->check(CLI::IsMember(speechCodecNames()))
        ->required();
    command->add_flag("--unpacked", options->unpacked,
                      "one code a byte, in its lowest bits; of g728 one in two, the lower first");
    command->add_flag("--no-postfilter", options->plain,
                      "decode g728 without its postfilter, which is not for speech that is coded "
                      "again");
    command->footer(kFormats);
    command->callback([options] { run(*options); });
}

}  // namespace mozep_program
