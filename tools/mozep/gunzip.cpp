// mozep gunzip: decompresses gzip files (RFC 1952) and zlib streams (RFC 1950).
#include <zlib.h>

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "commands.h"
#include "gunzip_inflate.h"
#include "gunzip_input.h"
#include "output_file.h"
#include "progress.h"

namespace mozep_program {
namespace {

struct Options {
    std::string file, output;
    bool toStdout = false, force = false;
};

class Gunzip {
public:
    Gunzip(GunzipInput& in, OutputFile& out)
        : in_(in),
          out_(out),
          progress_(in.size()),
          inflater_(in, [this](const Zep8u* data, std::size_t bytes) { take(data, bytes); }) {}

    // What the user should know although all is well; empty if nothing.
    std::string run() {
        if (!in_.reach(2)) fail(in_.reach(1) ? "is too short to be compressed data" : "is empty");
        if (atGzipMember()) {
            do gzipMember();
            while (atGzipMember());
        } else if (atZlibStream()) {
            do zlibStream();
            while (atZlibStream());
        } else {
            fail("is neither gzip nor zlib data");
        }
        return in_.onlyZerosLeft() ? "" : "other data behind the compressed data is ignored";
    }

private:
    enum class Check { Crc32, Adler32 };

    bool atGzipMember() { return in_.reach(2) && in_.next[0] == 0x1F && in_.next[1] == 0x8B; }
    bool atZlibStream() {
        return in_.reach(2) && (in_.next[0] & 15) == 8 &&
               (in_.next[0] * 256 + in_.next[1]) % 31 == 0;
    }

    [[noreturn]] void fail(const std::string& what) const {
        throw Failure(in_.name() + ": " + what);
    }

    void take(const Zep8u* data, std::size_t bytes) {
        const auto count = static_cast<uInt>(bytes);  // at most the inflater's buffer
        sum_ = check_ == Check::Crc32 ? crc32(sum_, data, count) : adler32(sum_, data, count);
        length_ += bytes;
        out_.write(data, bytes);
        progress_.reached(in_.consumed());
    }

    int headerByte() {
        const int value = in_.byte();
        if (value < 0) fail("ends too early");
        const auto byte = static_cast<Bytef>(value);
        headerSum_ = crc32(headerSum_, &byte, 1);
        return value;
    }

    void gzipHeader() {
        constexpr int kDeflate = 8;
        constexpr int kHeaderCrc = 2, kExtra = 4, kName = 8, kComment = 16, kReserved = 0xE0;
        headerSum_ = 0;
        headerByte(), headerByte();  // the magic number
        if (headerByte() != kDeflate) fail("uses an unknown compression method");
        const int flags = headerByte();
        if ((flags & kReserved) != 0) fail("corrupt: unknown flags in the header");
        for (int n = 0; n < 6; ++n) headerByte();  // time, extra flags, operating system
        if ((flags & kExtra) != 0) {
            int bytes = headerByte();
            bytes += 256 * headerByte();
            for (; bytes > 0; --bytes) headerByte();
        }
        for (const int text : {kName, kComment})
            if ((flags & text) != 0)
                while (headerByte() != 0) {
                }
        if ((flags & kHeaderCrc) != 0) {
            const auto expected = static_cast<int>(headerSum_ & 0xFFFF);
            int stored = headerByte();
            stored += 256 * headerByte();
            if (stored != expected) fail("corrupt: the header's checksum does not match");
        }
    }

    void gzipMember() {
        gzipHeader();
        decode(Check::Crc32);
        Zep8u trailer[8];
        for (int n = 0; n < 4; ++n) {
            trailer[n] = static_cast<Zep8u>(sum_ >> (8 * n));
            trailer[n + 4] = static_cast<Zep8u>(length_ >> (8 * n));
        }
        expectTrailer({reinterpret_cast<char*>(trailer), sizeof trailer});
    }

    void zlibStream() {
        constexpr int kDictionary = 0x20;
        const int method = in_.byte(), flags = in_.byte();
        if ((method >> 4) > 7) fail("corrupt: unknown window size");
        if ((flags & kDictionary) != 0) fail("needs a preset dictionary");
        decode(Check::Adler32);
        Zep8u trailer[4];
        for (int n = 0; n < 4; ++n) trailer[n] = static_cast<Zep8u>(sum_ >> (24 - 8 * n));
        expectTrailer({reinterpret_cast<char*>(trailer), sizeof trailer});
    }

    void decode(Check check) {
        check_ = check;
        sum_ = check == Check::Crc32 ? crc32(0, nullptr, 0) : adler32(0, nullptr, 0);
        length_ = 0;
        inflater_.inflate();
    }

    // The checksum (and length) that the stream must end with. Bytes that the decoder may have kept
    // are tried as part of it, as long as the empty stored block (LEN 0 and its complement) stands
    // right before them.
    void expectTrailer(std::string_view trailer) {
        using namespace std::string_view_literals;
        const int size = static_cast<int>(trailer.size());
        for (int kept = inflater_.mayBeUnreturned(); kept >= 0; --kept) {
            if (!in_.reach(size - kept)) continue;
            const auto* const begin = reinterpret_cast<const char*>(in_.next) - kept;
            if (kept > 0 && std::string_view(begin - 4, 4) != "\0\0\xFF\xFF"sv) continue;
            if (std::string_view(begin, trailer.size()) != trailer) continue;
            in_.next += size - kept;
            in_.left -= size - kept;
            return;
        }
        fail(in_.reach(size - inflater_.mayBeUnreturned()) ? "corrupt: the checksum does not match"
                                                           : "ends too early");
    }

    GunzipInput& in_;
    OutputFile& out_;
    Progress progress_;
    Inflater inflater_;
    Check check_ = Check::Crc32;
    uLong sum_ = 0, headerSum_ = 0;
    std::uint64_t length_ = 0;
};

// The input's name without its last extension, in capital letters or small ones.
std::string outputName(const std::string& file) {
    std::string small = file;
    for (char& c : small)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    for (const std::string_view suffix : {".gz", ".zz", ".zlib"})
        if (small.size() > suffix.size() && small.ends_with(suffix) &&
            small[small.size() - suffix.size() - 1] != '/')
            return file.substr(0, file.size() - suffix.size());
    if (small.ends_with(".tgz"))
        return file.substr(0, file.size() - 2) + (file.ends_with("Z") ? "AR" : "ar");
    throw Failure(file + ": has no known extension to remove; name the output with -o");
}

void gunzip(const Options& options) {
    using Existing = OutputFile::Existing;
    GunzipInput in(options.file);
    const bool named = !options.output.empty();
    const bool toStdout =
        options.toStdout || options.output == "-" || (!named && options.file == "-");
    OutputFile out(toStdout ? ""
                   : named  ? options.output
                            : outputName(options.file),
                   named || options.force ? Existing::Replace : Existing::Refuse);
    const std::string warning = Gunzip(in, out).run();
    out.commit(in.status());
    if (!warning.empty())
        std::fprintf(stderr, "mozep gunzip: %s: %s\n", in.name().c_str(), warning.c_str());
}

}  // namespace

void addGunzip(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    CLI::App* command = app.add_subcommand(
        "gunzip",
        "Decompress a gzip or zlib file. The input is kept; the output appears under its name when "
        "complete, with the input's permissions and time. Data of another kind behind the "
        "compressed data is named in a warning and ignored.");
    command
        ->add_option("FILE", options->file,
                     "gzip or zlib file of one or more members; - is the standard input")
        ->required();
    CLI::Option* output =
        command->add_option("-o,--output", options->output,
                            "file to write or replace; of a symbolic link the target; - is the "
                            "standard output (default: FILE without .gz)");
    command->add_flag("--stdout", options->toStdout, "write to the standard output")
        ->excludes(output);
    command->add_flag("-f,--force", options->force, "replace an existing file without -o too");
    command->callback([options] { gunzip(*options); });
}

}  // namespace mozep_program
