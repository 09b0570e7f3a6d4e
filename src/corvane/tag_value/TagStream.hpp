#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

class TagItem;

/// A metadata family, named as ExifTool names its family-0 group ("EXIF",
/// "IPTC", "XMP", ...) or, for maker notes, the maker's family-1 group ("Canon").
class TagStream {
public:
    TagStream() = default;
    /// A family by its name, as ExifTool spells it ("EXIF", "Canon"); any text is accepted.
    explicit TagStream(std::string rawValue) : rawValue_(std::move(rawValue)) {}

    /// The family's name.
    const std::string& rawValue() const { return rawValue_; }

    /// Equal and ordered by name (for the display order, see `sortWithIndex`).
    ///@{
    friend bool operator==(const TagStream&, const TagStream&) = default;
    friend auto operator<=>(const TagStream& a, const TagStream& b) { return a.rawValue_ <=> b.rawValue_; }
    ///@}

    /// Every family of the catalogue, in catalogue order.
    static const std::vector<TagStream>& allCases();
    /// The families that hold maker notes; they fold to streamMakerNotes.
    static const std::vector<TagStream>& makerStreams();

    /// Place in the display order: File, EXIF, IPTC, XMP, then the rest of
    /// allCases in catalogue order. Absent for a family outside allCases.
    std::optional<int> index() const;
    /// Deliberately non-strict for two indexed families (rhs >= lhs).
    static bool sortWithIndex(const TagStream& lhs, const TagStream& rhs);

    /// True for a family of the catalogue; true for a catalogue family that holds maker notes.
    ///@{
    bool isG0Stream() const;
    bool isMakerStream() const;
    ///@}
    /// `streamMakerNotes` for a maker family, else this family: how views group the makers' notes.
    TagStream makerFamilyFixed() const;
    /// Catalogue entries of this family, sorted; empty for an unknown family.
    const std::vector<const TagItem*>& items() const;

    /// One constant per family the library names, spelt as its name ("ICC_Profile", "Jpeg2000").
    ///@{
    static const TagStream streamAFCP;
    static const TagStream streamAIFF;
    static const TagStream streamAPE;
    static const TagStream streamASF;
    static const TagStream streamAudible;
    static const TagStream streamCanon;
    static const TagStream streamCanonRaw;
    static const TagStream streamCanonVRD;
    static const TagStream streamDICOM;
    static const TagStream streamDJI;
    static const TagStream streamDV;
    static const TagStream streamDjVu;
    static const TagStream streamEXE;
    static const TagStream streamEXIF;
    static const TagStream streamFITS;
    static const TagStream streamFLAC;
    static const TagStream streamFLIR;
    static const TagStream streamFile;
    static const TagStream streamFlash;
    static const TagStream streamFlashPix;
    static const TagStream streamFont;
    static const TagStream streamFotoStation;
    static const TagStream streamFujiFilm;
    static const TagStream streamGIF;
    static const TagStream streamGIMP;
    static const TagStream streamGeoTiff;
    static const TagStream streamGoPro;
    static const TagStream streamH264;
    static const TagStream streamHP;
    static const TagStream streamHTML;
    static const TagStream streamICC_Profile;
    static const TagStream streamID3;
    static const TagStream streamIPTC;
    static const TagStream streamISO;
    static const TagStream streamITC;
    static const TagStream streamJFIF;
    static const TagStream streamJPEG;
    static const TagStream streamJSON;
    static const TagStream streamJUMBF;
    static const TagStream streamJpeg2000;
    static const TagStream streamKodak;
    static const TagStream streamKyoceraRaw;
    static const TagStream streamLNK;
    static const TagStream streamLeaf;
    static const TagStream streamLytro;
    static const TagStream streamM2TS;
    static const TagStream streamMIE;
    static const TagStream streamMIFF;
    static const TagStream streamMISB;
    static const TagStream streamMOI;
    static const TagStream streamMPC;
    static const TagStream streamMPEG;
    static const TagStream streamMPF;
    static const TagStream streamMXF;
    static const TagStream streamMakerNotes;
    static const TagStream streamMatroska;
    static const TagStream streamMinolta;
    static const TagStream streamMinoltaRaw;
    static const TagStream streamNikon;
    static const TagStream streamNikonCapture;
    static const TagStream streamOlympus;
    static const TagStream streamOpenEXR;
    static const TagStream streamOpus;
    static const TagStream streamPDF;
    static const TagStream streamPICT;
    static const TagStream streamPLIST;
    static const TagStream streamPNG;
    static const TagStream streamPSP;
    static const TagStream streamPalm;
    static const TagStream streamPanasonic;
    static const TagStream streamPanasonicRaw;
    static const TagStream streamPentax;
    static const TagStream streamPhaseOne;
    static const TagStream streamPhotoCD;
    static const TagStream streamPhotoMechanic;
    static const TagStream streamPhotoshop;
    static const TagStream streamPostScript;
    static const TagStream streamQualcomm;
    static const TagStream streamQuickTime;
    static const TagStream streamRIFF;
    static const TagStream streamRSRC;
    static const TagStream streamRTF;
    static const TagStream streamRadiance;
    static const TagStream streamRawzor;
    static const TagStream streamReal;
    static const TagStream streamRed;
    static const TagStream streamRicoh;
    static const TagStream streamSVG;
    static const TagStream streamSamsung;
    static const TagStream streamSigma;
    static const TagStream streamSigmaRaw;
    static const TagStream streamSony;
    static const TagStream streamSonyIDC;
    static const TagStream streamStim;
    static const TagStream streamTheora;
    static const TagStream streamTrailer;
    static const TagStream streamVCard;
    static const TagStream streamVorbis;
    static const TagStream streamWTV;
    static const TagStream streamXML;
    static const TagStream streamXMP;
    static const TagStream streamZIP;
    static const TagStream streamComposite;
    static const TagStream streamAPP8;
    static const TagStream streamMNG;
    ///@}

private:
    std::string rawValue_;
};

inline const TagStream TagStream::streamAFCP{"AFCP"};
inline const TagStream TagStream::streamAIFF{"AIFF"};
inline const TagStream TagStream::streamAPE{"APE"};
inline const TagStream TagStream::streamASF{"ASF"};
inline const TagStream TagStream::streamAudible{"Audible"};
inline const TagStream TagStream::streamCanon{"Canon"};
inline const TagStream TagStream::streamCanonRaw{"CanonRaw"};
inline const TagStream TagStream::streamCanonVRD{"CanonVRD"};
inline const TagStream TagStream::streamDICOM{"DICOM"};
inline const TagStream TagStream::streamDJI{"DJI"};
inline const TagStream TagStream::streamDV{"DV"};
inline const TagStream TagStream::streamDjVu{"DjVu"};
inline const TagStream TagStream::streamEXE{"EXE"};
inline const TagStream TagStream::streamEXIF{"EXIF"};
inline const TagStream TagStream::streamFITS{"FITS"};
inline const TagStream TagStream::streamFLAC{"FLAC"};
inline const TagStream TagStream::streamFLIR{"FLIR"};
inline const TagStream TagStream::streamFile{"File"};
inline const TagStream TagStream::streamFlash{"Flash"};
inline const TagStream TagStream::streamFlashPix{"FlashPix"};
inline const TagStream TagStream::streamFont{"Font"};
inline const TagStream TagStream::streamFotoStation{"FotoStation"};
inline const TagStream TagStream::streamFujiFilm{"FujiFilm"};
inline const TagStream TagStream::streamGIF{"GIF"};
inline const TagStream TagStream::streamGIMP{"GIMP"};
inline const TagStream TagStream::streamGeoTiff{"GeoTiff"};
inline const TagStream TagStream::streamGoPro{"GoPro"};
inline const TagStream TagStream::streamH264{"H264"};
inline const TagStream TagStream::streamHP{"HP"};
inline const TagStream TagStream::streamHTML{"HTML"};
inline const TagStream TagStream::streamICC_Profile{"ICC_Profile"};
inline const TagStream TagStream::streamID3{"ID3"};
inline const TagStream TagStream::streamIPTC{"IPTC"};
inline const TagStream TagStream::streamISO{"ISO"};
inline const TagStream TagStream::streamITC{"ITC"};
inline const TagStream TagStream::streamJFIF{"JFIF"};
inline const TagStream TagStream::streamJPEG{"JPEG"};
inline const TagStream TagStream::streamJSON{"JSON"};
inline const TagStream TagStream::streamJUMBF{"JUMBF"};
inline const TagStream TagStream::streamJpeg2000{"Jpeg2000"};
inline const TagStream TagStream::streamKodak{"Kodak"};
inline const TagStream TagStream::streamKyoceraRaw{"KyoceraRaw"};
inline const TagStream TagStream::streamLNK{"LNK"};
inline const TagStream TagStream::streamLeaf{"Leaf"};
inline const TagStream TagStream::streamLytro{"Lytro"};
inline const TagStream TagStream::streamM2TS{"M2TS"};
inline const TagStream TagStream::streamMIE{"MIE"};
inline const TagStream TagStream::streamMIFF{"MIFF"};
inline const TagStream TagStream::streamMISB{"MISB"};
inline const TagStream TagStream::streamMOI{"MOI"};
inline const TagStream TagStream::streamMPC{"MPC"};
inline const TagStream TagStream::streamMPEG{"MPEG"};
inline const TagStream TagStream::streamMPF{"MPF"};
inline const TagStream TagStream::streamMXF{"MXF"};
inline const TagStream TagStream::streamMakerNotes{"MakerNotes"};
inline const TagStream TagStream::streamMatroska{"Matroska"};
inline const TagStream TagStream::streamMinolta{"Minolta"};
inline const TagStream TagStream::streamMinoltaRaw{"MinoltaRaw"};
inline const TagStream TagStream::streamNikon{"Nikon"};
inline const TagStream TagStream::streamNikonCapture{"NikonCapture"};
inline const TagStream TagStream::streamOlympus{"Olympus"};
inline const TagStream TagStream::streamOpenEXR{"OpenEXR"};
inline const TagStream TagStream::streamOpus{"Opus"};
inline const TagStream TagStream::streamPDF{"PDF"};
inline const TagStream TagStream::streamPICT{"PICT"};
inline const TagStream TagStream::streamPLIST{"PLIST"};
inline const TagStream TagStream::streamPNG{"PNG"};
inline const TagStream TagStream::streamPSP{"PSP"};
inline const TagStream TagStream::streamPalm{"Palm"};
inline const TagStream TagStream::streamPanasonic{"Panasonic"};
inline const TagStream TagStream::streamPanasonicRaw{"PanasonicRaw"};
inline const TagStream TagStream::streamPentax{"Pentax"};
inline const TagStream TagStream::streamPhaseOne{"PhaseOne"};
inline const TagStream TagStream::streamPhotoCD{"PhotoCD"};
inline const TagStream TagStream::streamPhotoMechanic{"PhotoMechanic"};
inline const TagStream TagStream::streamPhotoshop{"Photoshop"};
inline const TagStream TagStream::streamPostScript{"PostScript"};
inline const TagStream TagStream::streamQualcomm{"Qualcomm"};
inline const TagStream TagStream::streamQuickTime{"QuickTime"};
inline const TagStream TagStream::streamRIFF{"RIFF"};
inline const TagStream TagStream::streamRSRC{"RSRC"};
inline const TagStream TagStream::streamRTF{"RTF"};
inline const TagStream TagStream::streamRadiance{"Radiance"};
inline const TagStream TagStream::streamRawzor{"Rawzor"};
inline const TagStream TagStream::streamReal{"Real"};
inline const TagStream TagStream::streamRed{"Red"};
inline const TagStream TagStream::streamRicoh{"Ricoh"};
inline const TagStream TagStream::streamSVG{"SVG"};
inline const TagStream TagStream::streamSamsung{"Samsung"};
inline const TagStream TagStream::streamSigma{"Sigma"};
inline const TagStream TagStream::streamSigmaRaw{"SigmaRaw"};
inline const TagStream TagStream::streamSony{"Sony"};
inline const TagStream TagStream::streamSonyIDC{"SonyIDC"};
inline const TagStream TagStream::streamStim{"Stim"};
inline const TagStream TagStream::streamTheora{"Theora"};
inline const TagStream TagStream::streamTrailer{"Trailer"};
inline const TagStream TagStream::streamVCard{"VCard"};
inline const TagStream TagStream::streamVorbis{"Vorbis"};
inline const TagStream TagStream::streamWTV{"WTV"};
inline const TagStream TagStream::streamXML{"XML"};
inline const TagStream TagStream::streamXMP{"XMP"};
inline const TagStream TagStream::streamZIP{"ZIP"};
inline const TagStream TagStream::streamComposite{"Composite"};
inline const TagStream TagStream::streamAPP8{"APP8"};
inline const TagStream TagStream::streamMNG{"MNG"};

} // namespace corvane

template <> struct std::hash<corvane::TagStream> {
    size_t operator()(const corvane::TagStream& s) const noexcept {
        return std::hash<std::string>()(s.rawValue());
    }
};
