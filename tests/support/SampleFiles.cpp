#include "support/SampleFiles.hpp"

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string_view>

#include "corvane/exiftool_wrapper/detail/ProgramRun.hpp"
#include "support/FileBytes.hpp"
#include "support/TemporaryFolder.hpp"

namespace corvane::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes fromHex(std::string_view hex) {
    Bytes bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes.push_back(static_cast<std::uint8_t>(std::stoul(std::string(hex.substr(i, 2)), nullptr, 16)));
    return bytes;
}

} // namespace

// The files are written out byte for byte: each is the smallest of its kind that ExifTool validates
// and writes into, and none needs changing.

// Baseline JFIF (APP0), a quantisation table of ones, an 8x8 frame of one grey component, two Huffman
// tables of one code of length 1 for symbol 0, and a scan whose single block (DC difference 0, then
// end of block) is the bits "00" padded with ones.
Bytes jpegBytes() {
    return fromHex(
        "ffd8ffe000104a46494600010100000100010000ffdb0043000101010101010101010101010101010101010101010101"
        "0101010101010101010101010101010101010101010101010101010101010101010101010101010101ffc0000b080008"
        "000801011100ffc40014000100000000000000000000000000000000ffc4001410010000000000000000000000000000"
        "0000ffda0008010100003f003fffd9");
}

// Signature; IHDR of a 1x1 8-bit grey image; IDAT holding a zlib stream of one stored block (filter
// byte 0 and the pixel 0x80) with its Adler-32; IEND. Each chunk ends with its CRC-32.
Bytes pngBytes() {
    return fromHex(
        "89504e470d0a1a0a0000000d49484452000000010000000108000000003a7e9b550000000d494441547801010200fdff"
        "008000820081c36e25e00000000049454e44ae426082");
}

// Little-endian header; IFD0 at offset 8 with 12 entries (8x8, 8 bits, no compression, BlackIsZero,
// one strip of 64 bytes, 72 dpi as two rationals, inches), no next IFD; the two rationals; the
// strip of grey bytes.
Bytes tiffBytes() {
    return fromHex(
        "49492a00080000000c000001030001000000080000000101030001000000080000000201030001000000080000000301"
        "030001000000010000000601030001000000010000001101040001000000ae0000001501030001000000010000001601"
        "030001000000080000001701040001000000400000001a010500010000009e0000001b01050001000000a60000002801"
        "030001000000020000000000000048000000010000004800000001000000808080808080808080808080808080808080"
        "80808080808080808080808080808080808080808080808080808080808080808080808080808080808080808080");
}

// ftyp "qt  ", wide, mdat holding the JPEG above at offset 36, then moov: mvhd (time scale 600,
// duration 600, next track 2) and one trak: tkhd (enabled, track 1, 8x8), mdia with mdhd, a video
// handler, and minf with vmhd, a data handler, a self-contained alias data reference and a sample
// table of one "jpeg" (Photo - JPEG, 8x8, depth 40) sample of the frame's size in one chunk at the
// frame's offset. Changing the JPEG means changing the sizes and offset here.
Bytes movBytes() {
    return fromHex(
        "00000014667479707174202020050300717420200000000877696465000000a76d646174ffd8ffe000104a4649460001"
        "0100000100010000ffdb0043000101010101010101010101010101010101010101010101010101010101010101010101"
        "0101010101010101010101010101010101010101010101010101010101ffc0000b080008000801011100ffc400140001"
        "00000000000000000000000000000000ffc40014100100000000000000000000000000000000ffda0008010100003f00"
        "3fffd9000002656d6f6f760000006c6d7668640000000000000000000000000000025800000258000100000100000000"
        "000000000000000001000000000000000000000000000000010000000000000000000000000000400000000000000000"
        "0000000000000000000000000000000000000000000002000001f17472616b0000005c746b68640000000f0000000000"
        "000000000000010000000000000258000000000000000000000000000000000001000000000000000000000000000000"
        "0100000000000000000000000000004000000000080000000800000000018d6d646961000000206d6468640000000000"
        "0000000000000000000258000002587fff00000000002e68646c72000000006d686c72766964656170706c0000000000"
        "0000000d566964656f2048616e646c6572000001376d696e6600000014766d6864000000010040800080008000000000"
        "2d68646c720000000064686c72616c69736170706c00000000000000000c446174612048616e646c6572000000246469"
        "6e660000001c6472656600000000000000010000000c616c697300000001000000ca7374626c00000066737473640000"
        "000000000001000000566a7065670000000000000001000000006170706c000000000000020000080008004800000048"
        "00000000000000010c50686f746f202d204a504547000000000000000000000000000000000000000028ffff00000018"
        "73747473000000000000000100000001000002580000001c737473630000000000000001000000010000000100000001"
        "000000147374737a000000000000009f00000001000000147374636f000000000000000100000024");
}

Bytes sampleBytes(SampleKind kind) {
    static constexpr Bytes (*makers[])() = {jpegBytes, pngBytes, tiffBytes, movBytes};
    return makers[static_cast<int>(kind)]();
}

std::string sampleExtension(SampleKind kind) {
    static constexpr const char* extensions[] = {"jpg", "png", "tif", "mov"};
    return extensions[static_cast<int>(kind)];
}

std::filesystem::path writeBytes(const std::filesystem::path& path, const Bytes& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!out) throw std::runtime_error("cannot write " + path.string());
    return path;
}

std::filesystem::path makeJPEG(const std::filesystem::path& path) {
    return writeBytes(path, jpegBytes());
}
std::filesystem::path makePNG(const std::filesystem::path& path) {
    return writeBytes(path, pngBytes());
}
std::filesystem::path makeTIFF(const std::filesystem::path& path) {
    return writeBytes(path, tiffBytes());
}
std::filesystem::path makeMOV(const std::filesystem::path& path) {
    return writeBytes(path, movBytes());
}
std::filesystem::path makeSample(SampleKind kind, const std::filesystem::path& path) {
    return writeBytes(path, sampleBytes(kind));
}

namespace {

// One argfile line. Plain lines lose leading blanks and a blank after "-Tag=", and cannot hold line
// breaks; those arguments go as C-string lines.
std::string argfileLine(const std::string& arg) {
    const bool plain = !arg.empty() && arg.find_first_of("\r\n") == std::string::npos && arg.front() != ' ' &&
                       arg.front() != '\t' && arg.front() != '#' && arg.find("= ") == std::string::npos;
    if (plain) return arg + "\n";
    if (arg.find_first_of("$@") != std::string::npos)
        throw std::invalid_argument("argument cannot be written in an argfile: " + arg);
    std::string line = "#[CSTR]";
    for (char c : arg) {
        const std::string_view escapes = "\\\\\"\"\nn\rr\tt"; // each character, then its escape letter
        const auto at = escapes.find(c);
        line +=
            at == std::string_view::npos || at % 2 ? std::string(1, c) : std::string{'\\', escapes[at + 1]};
    }
    return line + "\n";
}

} // namespace

ExifToolRun runExifTool(const std::vector<std::string>& arguments) {
    TemporaryFolder folder("corvane-exiftool");
    const auto argfile = folder / "args.txt";
    {
        std::ofstream out(argfile, std::ios::binary);
        for (const auto& a : arguments)
            out << argfileLine(a);
    }
    const char* fromEnv = std::getenv("CORVANE_EXIFTOOL");
    const std::string tool = fromEnv && *fromEnv ? fromEnv : "/usr/bin/exiftool";
    const auto run = detail::runProgram({tool, "-@", argfile.string()}, std::chrono::minutes(10));
    if (run.launchError != 0) throw std::runtime_error("cannot start " + tool);
    return {run.exitStatus.value_or(-1), run.standardOutput, run.standardError};
}

void tagWithExifTool(const std::filesystem::path& path, const std::vector<std::string>& arguments) {
    std::vector<std::string> args = {"-overwrite_original"};
    args.insert(args.end(), arguments.begin(), arguments.end());
    args.push_back(path.is_absolute() ? path.string() : (std::filesystem::path(".") / path).string());
    const auto run = runExifTool(args);
    if (run.exitCode != 0 || run.standardOutput.find("1 image files updated") == std::string::npos)
        throw std::runtime_error("exiftool could not tag " + path.string() + ": " + run.standardError +
                                 run.standardOutput);
}

std::filesystem::path makeJPEGWithMinorExifDefect(const std::filesystem::path& path) {
    makeJPEG(path);
    tagWithExifTool(path, {"-EXIF:Artist=Minor"});
    std::string bytes = fileBytes(path);
    const auto at = bytes.find(std::string("Exif\0\0", 6));
    if (at == std::string::npos) throw std::runtime_error("no EXIF segment in " + path.string());
    bytes[at] = 'e';
    return writeBytes(path, Bytes(bytes.begin(), bytes.end()));
}

std::string exifToolValue(const std::filesystem::path& path, const std::string& tag, bool raw) {
    std::vector<std::string> args = {"-s3", "-" + tag};
    if (raw) args.push_back("-n");
    args.push_back(path.is_absolute() ? path.string() : (std::filesystem::path(".") / path).string());
    auto out = runExifTool(args).standardOutput;
    while (!out.empty() && (out.back() == '\n' || out.back() == '\r'))
        out.pop_back();
    return out;
}

} // namespace corvane::test
