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
#include "sound_file.h"
#include "speech_codec.h"
#include "wav_output.h"

namespace mozep_program {
namespace {

constexpr int kRate = 8000;
constexpr std::size_t kBlock = 4000;  // half a second

constexpr const char* kFormats =
    "Sound files are of 8000 Hz; the mean of several channels is coded. Code files have no "
    "header.\n"
    "alaw and ulaw: G.711, a byte a sample as on the line. g726-16 to g726-40: G.726 at 16 to\n"
    "40 kbit/s, codes of 2 to 5 bits packed as in RFC 3551, the first in the lowest bits. A last\n"
    "byte that the codes do not fill is filled up with zeros, which decode to up to three samples\n"
    "more than were coded.";

struct Options {
    std::string action, codec, in, out;
    bool unpacked = false;
};

void encode(const Options& options, const SpeechCodec& codec) {
    SoundFile in(options.in, 0);
    if (in.rate() != kRate)
        throw Failure(options.in + ": has " + std::to_string(in.rate()) + " Hz in place of " +
                      std::to_string(kRate));
    OutputFile out(options.out == "-" ? "" : options.out, OutputFile::Existing::Replace);
    const SpeechEncoder encoder = makeEncoder(codec);
    CodePacker packer(codec.bits);
    Progress progress(in.declaredFrames());
    std::vector<float> block(kBlock);
    long long limited = 0;
    while (const std::size_t count = in.read(block)) {
        std::vector<Zep16s> samples(count);
        limited += toInt16(block.data(), samples.data(), static_cast<int>(count));
        std::vector<Zep8u> bytes;
        if (options.unpacked)
            bytes = encoder(samples);
        else
            packer.pack(encoder(samples), bytes);
        out.write(bytes.data(), bytes.size());
        progress.reached(static_cast<double>(in.framesRead()));
    }
    std::vector<Zep8u> last;
    packer.finish(last);
    out.write(last.data(), last.size());
    if (in.framesRead() == 0) throw Failure(options.in + ": holds no samples");
    const std::string shortfall = in.shortfall();
    out.commit();
    if (!shortfall.empty()) warn("speech", options.in + ": is cut short: " + shortfall);
    if (in.channels() > 1)
        warn("speech", options.in + ": the mean of its " + std::to_string(in.channels()) +
                           " channels was coded");
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

std::vector<Zep8u> readCodes(const Options& options, const SpeechCodec& codec) {
    std::vector<Zep8u> bytes = readAll(options.in);
    if (!options.unpacked) return unpackCodes(bytes, codec.bits);
    const auto wrong = std::find_if(bytes.begin(), bytes.end(),
                                    [&](unsigned byte) { return byte >> codec.bits != 0; });
    if (wrong != bytes.end())
        throw Failure(options.in + ": byte " + std::to_string(wrong - bytes.begin()) +
                      " is no code of " + std::to_string(codec.bits) + " bits");
    return bytes;
}

void decode(const Options& options, const SpeechCodec& codec) {
    constexpr auto kFormat = WavOutput::Format::Int16;
    const std::vector<Zep8u> codes = readCodes(options, codec);
    const auto count = static_cast<long long>(codes.size());
    if (count > WavOutput::longest(kFormat))
        throw Failure(options.in + ": is longer than a WAV file can be");
    WavOutput out(options.out, kFormat, kRate, count);
    const SpeechDecoder decoder = makeDecoder(codec);
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
    options.action == "encode" ? encode(options, codec) : decode(options, codec);
}

}  // namespace

void addSpeech(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    CLI::App* command = app.add_subcommand(
        "speech", "Code a sound file as G.711 or G.726, or decode such codes to a WAV file");
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
    command->add_flag("--unpacked", options->unpacked, "one code a byte, in its lowest bits");
    command->footer(kFormats);
    command->callback([options] { run(*options); });
}

}  // namespace mozep_program
