#include "support/SampleFiles.hpp"

#include <array>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <initializer_list>
#include <stdexcept>
#include <string_view>

#include "corvane/exiftool_wrapper/detail/ProgramRun.hpp"
#include "support/FileBytes.hpp"
#include "support/TemporaryFolder.hpp"

namespace corvane::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

void put8(Bytes& b, unsigned v) {
    b.push_back(static_cast<std::uint8_t>(v));
}
void put16be(Bytes& b, unsigned v) {
    put8(b, (v >> 8) & 0xFF);
    put8(b, v & 0xFF);
}
void put32be(Bytes& b, std::uint32_t v) {
    put16be(b, v >> 16);
    put16be(b, v & 0xFFFF);
}
// Several big-endian words in a row, as the atoms below lay out their fields.
void put32s(Bytes& b, std::initializer_list<std::uint32_t> values) {
    for (auto v : values)
        put32be(b, v);
}
void put16s(Bytes& b, std::initializer_list<unsigned> values) {
    for (auto v : values)
        put16be(b, v);
}
void put16le(Bytes& b, unsigned v) {
    put8(b, v & 0xFF);
    put8(b, (v >> 8) & 0xFF);
}
void put32le(Bytes& b, std::uint32_t v) {
    put16le(b, v & 0xFFFF);
    put16le(b, v >> 16);
}
void putText(Bytes& b, std::string_view s) {
    b.insert(b.end(), s.begin(), s.end());
}
void append(Bytes& b, const Bytes& more) {
    b.insert(b.end(), more.begin(), more.end());
}

std::uint32_t crc32(const std::uint8_t* data, std::size_t size) {
    static const auto table = [] {
        std::array<std::uint32_t, 256> t{};
        for (std::uint32_t n = 0; n < 256; ++n) {
            std::uint32_t c = n;
            for (int k = 0; k < 8; ++k)
                c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
            t[n] = c;
        }
        return t;
    }();
    std::uint32_t c = 0xFFFFFFFFu;
    for (std::size_t i = 0; i < size; ++i)
        c = table[(c ^ data[i]) & 0xFF] ^ (c >> 8);
    return c ^ 0xFFFFFFFFu;
}

void pngChunk(Bytes& out, std::string_view type, const Bytes& data) {
    put32be(out, static_cast<std::uint32_t>(data.size()));
    Bytes typed;
    putText(typed, type);
    append(typed, data);
    append(out, typed);
    put32be(out, crc32(typed.data(), typed.size()));
}

// A QuickTime atom: 32-bit size, four-character type, payload.
Bytes atom(std::string_view type, const Bytes& payload) {
    Bytes b;
    put32be(b, static_cast<std::uint32_t>(8 + payload.size()));
    putText(b, type);
    append(b, payload);
    return b;
}

void putMatrix(Bytes& b) {
    put32s(b, {0x00010000, 0, 0, 0, 0x00010000, 0, 0, 0, 0x40000000});
}

} // namespace

Bytes jpegBytes() {
    // Baseline JFIF, 8x8, one grey component. Each Huffman table holds one code of length 1 for
    // symbol 0, so the single block (DC difference 0, then end of block) is the bits "00".
    Bytes b = {0xFF, 0xD8};
    put16be(b, 0xFFE0);
    put16be(b, 16);
    putText(b, std::string_view("JFIF\0", 5));
    b.insert(b.end(), {0x01, 0x01, 0x00, 0x00, 0x01, 0x00, 0x01, 0x00, 0x00});
    put16be(b, 0xFFDB);
    put16be(b, 67);
    put8(b, 0x00);
    b.insert(b.end(), 64, 0x01);
    put16be(b, 0xFFC0);
    put16be(b, 11);
    b.insert(b.end(), {0x08, 0x00, 0x08, 0x00, 0x08, 0x01, 0x01, 0x11, 0x00});
    for (std::uint8_t tableClass : {0x00, 0x10}) {
        put16be(b, 0xFFC4);
        put16be(b, 20);
        put8(b, tableClass);
        put8(b, 1);
        b.insert(b.end(), 15, 0x00);
        put8(b, 0x00);
    }
    put16be(b, 0xFFDA);
    put16be(b, 8);
    b.insert(b.end(), {0x01, 0x01, 0x00, 0x00, 0x3F, 0x00});
    put8(b, 0x3F); // "00" padded with ones
    b.insert(b.end(), {0xFF, 0xD9});
    return b;
}

Bytes pngBytes() {
    Bytes b = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    Bytes ihdr;
    put32be(ihdr, 1);
    put32be(ihdr, 1);
    ihdr.insert(ihdr.end(), {8, 0, 0, 0, 0}); // 8-bit grey, deflate, no filter, no interlace
    pngChunk(b, "IHDR", ihdr);
    // zlib stream with one stored block: filter byte 0 and one grey pixel.
    const Bytes raw = {0x00, 0x80};
    Bytes idat = {0x78, 0x01, 0x01};
    put16le(idat, static_cast<unsigned>(raw.size()));
    put16le(idat, static_cast<unsigned>(~raw.size() & 0xFFFF));
    append(idat, raw);
    std::uint32_t a = 1, s = 0;
    for (auto c : raw) {
        a = (a + c) % 65521;
        s = (s + a) % 65521;
    }
    put32be(idat, (s << 16) | a);
    pngChunk(b, "IDAT", idat);
    pngChunk(b, "IEND", {});
    return b;
}

Bytes tiffBytes() {
    // Header, IFD0 at 8, then the two resolution rationals, then the 8x8 strip.
    constexpr std::uint32_t entryCount = 12;
    constexpr std::uint32_t ifdSize = 2 + entryCount * 12 + 4;
    constexpr std::uint32_t xResOffset = 8 + ifdSize;
    constexpr std::uint32_t yResOffset = xResOffset + 8;
    constexpr std::uint32_t stripOffset = yResOffset + 8;
    Bytes b = {'I', 'I', 42, 0};
    put32le(b, 8);
    put16le(b, entryCount);
    auto entry = [&](unsigned tag, unsigned type, std::uint32_t count, std::uint32_t value) {
        put16le(b, tag);
        put16le(b, type);
        put32le(b, count);
        put32le(b, value); // a SHORT sits in the low bytes, which come first in little-endian
    };
    entry(256, 3, 1, 8);           // ImageWidth
    entry(257, 3, 1, 8);           // ImageLength
    entry(258, 3, 1, 8);           // BitsPerSample
    entry(259, 3, 1, 1);           // Compression: none
    entry(262, 3, 1, 1);           // PhotometricInterpretation: BlackIsZero
    entry(273, 4, 1, stripOffset); // StripOffsets
    entry(277, 3, 1, 1);           // SamplesPerPixel
    entry(278, 3, 1, 8);           // RowsPerStrip
    entry(279, 4, 1, 64);          // StripByteCounts
    entry(282, 5, 1, xResOffset);  // XResolution
    entry(283, 5, 1, yResOffset);  // YResolution
    entry(296, 3, 1, 2);           // ResolutionUnit: inches
    put32le(b, 0);                 // no next IFD
    for (int i = 0; i < 2; ++i) {
        put32le(b, 72);
        put32le(b, 1);
    }
    b.insert(b.end(), 64, 0x80);
    return b;
}

Bytes movBytes() {
    const Bytes frame = jpegBytes();
    constexpr std::uint32_t timeScale = 600, duration = 600;

    Bytes ftypPayload;
    putText(ftypPayload, "qt  ");
    put32be(ftypPayload, 0x20050300);
    putText(ftypPayload, "qt  ");
    const Bytes ftyp = atom("ftyp", ftypPayload);
    const Bytes wide = atom("wide", {});
    const Bytes mdat = atom("mdat", frame);
    const std::uint32_t frameOffset = static_cast<std::uint32_t>(ftyp.size() + wide.size() + 8);

    // Version and flags, creation and modification times, time scale, duration, rate, volume.
    Bytes mvhd;
    put32s(mvhd, {0, 0, 0, timeScale, duration, 0x00010000});
    put16be(mvhd, 0x0100);
    mvhd.insert(mvhd.end(), 10, 0);
    putMatrix(mvhd);
    put32s(mvhd, {0, 0, 0, 0, 0, 0, 2}); // preview, poster, selection, current time; next track ID

    // Enabled, in movie, preview and poster; times; track ID 1; duration; layer, group, volume.
    Bytes tkhd;
    put32s(tkhd, {0x0000000F, 0, 0, 1, 0, duration});
    tkhd.insert(tkhd.end(), 8, 0);
    put16s(tkhd, {0, 0, 0, 0});
    putMatrix(tkhd);
    put32s(tkhd, {8 << 16, 8 << 16}); // width, height

    // Times, time scale, duration, language unspecified, quality.
    Bytes mdhd;
    put32s(mdhd, {0, 0, 0, timeScale, duration});
    put16s(mdhd, {0x7FFF, 0});

    auto handler = [](std::string_view componentType, std::string_view subType, std::string_view name) {
        Bytes h;
        put32be(h, 0);
        putText(h, componentType);
        putText(h, subType);
        putText(h, "appl");
        put32s(h, {0, 0});
        put8(h, static_cast<unsigned>(name.size())); // Pascal string
        putText(h, name);
        return atom("hdlr", h);
    };

    Bytes vmhd;
    put32be(vmhd, 0x00000001);
    put16s(vmhd, {0x0040, 0x8000, 0x8000, 0x8000}); // graphics mode copy, opcolour

    Bytes alis;
    put32be(alis, 0x00000001); // self-contained: data is in this file
    Bytes dref;
    put32s(dref, {0, 1});
    append(dref, atom("alis", alis));
    const Bytes dinf = atom("dinf", atom("dref", dref));

    Bytes sampleEntry;
    sampleEntry.insert(sampleEntry.end(), 6, 0);
    put16s(sampleEntry, {1, 0, 0}); // data reference index, version, revision
    putText(sampleEntry, "appl");
    put32s(sampleEntry, {0, 512}); // temporal and spatial quality
    put16s(sampleEntry, {8, 8});
    put32s(sampleEntry, {0x00480000, 0x00480000, 0}); // resolutions, data size
    put16be(sampleEntry, 1);                          // frames per sample
    Bytes compressor(32, 0);
    const std::string_view name = "Photo - JPEG";
    compressor[0] = static_cast<std::uint8_t>(name.size());
    std::copy(name.begin(), name.end(), compressor.begin() + 1);
    append(sampleEntry, compressor);
    put16s(sampleEntry, {40, 0xFFFF}); // depth 8-bit grey, no colour table
    Bytes stsd;
    put32s(stsd, {0, 1});
    append(stsd, atom("jpeg", sampleEntry));

    // One sample of one frame, in one chunk at the frame's offset.
    Bytes stts, stsc, stsz, stco;
    put32s(stts, {0, 1, 1, duration});
    put32s(stsc, {0, 1, 1, 1, 1});
    put32s(stsz, {0, static_cast<std::uint32_t>(frame.size()), 1});
    put32s(stco, {0, 1, frameOffset});

    Bytes stbl = atom("stsd", stsd);
    append(stbl, atom("stts", stts));
    append(stbl, atom("stsc", stsc));
    append(stbl, atom("stsz", stsz));
    append(stbl, atom("stco", stco));

    Bytes minf = atom("vmhd", vmhd);
    append(minf, handler("dhlr", "alis", "Data Handler"));
    append(minf, dinf);
    append(minf, atom("stbl", stbl));

    Bytes mdia = atom("mdhd", mdhd);
    append(mdia, handler("mhlr", "vide", "Video Handler"));
    append(mdia, atom("minf", minf));

    Bytes trak = atom("tkhd", tkhd);
    append(trak, atom("mdia", mdia));

    Bytes moov = atom("mvhd", mvhd);
    append(moov, atom("trak", trak));

    Bytes out = ftyp;
    append(out, wide);
    append(out, mdat);
    append(out, atom("moov", moov));
    return out;
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
