#pragma once

#include "corvane/tag_value/MediaKind.hpp"
#include "corvane/tag_value/TagAccess.hpp"
#include "corvane/tag_value/TagStream.hpp"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace corvane {

// A file format the library knows: its key (the extension in upper case), its
// medium and what may be done with each metadata family in it. Immutable;
// copies share one record. Equality and hashing take the format alone.
class MediaType {
public:
    using AccessMap = std::unordered_map<TagStream, TagAccess>;
    using Set = std::unordered_set<MediaType>;

    // The format is upper-cased; a family absent from access counts as n.
    MediaType(std::string_view format, MediaKind kind, AccessMap access);

    const std::string& format() const { return data_->format; }
    MediaKind kind() const { return data_->kind; }
    const AccessMap& access() const { return data_->access; }
    // The rights on one family, n when the format does not list it.
    TagAccess access(const TagStream& stream) const;

    bool is(const MediaType& other) const { return format() == other.format(); }
    // True when the format equals the text, upper-cased.
    bool isFormat(std::string_view text) const;
    bool isFormat(const char* text) const { return isFormat(std::string_view(text)); }
    bool isFormat(const std::string& text) const { return isFormat(std::string_view(text)); }
    // True when the format equals the path's extension, upper-cased.
    bool isFormat(const std::filesystem::path& url) const;

    // Look-ups through the index; lower- and mixed-case keys find the same
    // record, nothing else is normalised. An unknown key gives nothing.
    static std::optional<MediaType> type(std::string_view extension);
    static std::optional<MediaType> type(const char* extension) { return type(std::string_view(extension)); }
    static std::optional<MediaType> type(const std::string& extension) {
        return type(std::string_view(extension));
    }
    // By the path's extension; a path without one is a folder (the file system
    // is not asked).
    static std::optional<MediaType> type(const std::filesystem::path& url);
    // Every record whose kind is one of the given ones.
    static Set types(const std::vector<MediaKind>& kinds);

    // typeFolder, then every format in declaration order.
    static const std::vector<MediaType>& allCases();
    // Format key to record, built once from allCases on first use.
    static const std::unordered_map<std::string, MediaType>& indexedTypes();

    // The upper-cased extension of a path, as the look-ups use it ("" for none).
    static std::string pathFormatKey(const std::filesystem::path& url);
    // Upper-casing as the look-ups do it: ASCII fast, other text through ICU.
    static std::string formatKey(std::string_view text);

    friend bool operator==(const MediaType& a, const MediaType& b) { return a.is(b); }

    // A folder: empty format, kind other, rwc for every family of TagStream::allCases().
    static const MediaType& typeFolder();
    // One constant per format, in allCases order, each built on first use.
    // "DVR-MS" is typeDVR_MS.
    static const MediaType& type360();
    static const MediaType& type3FR();
    static const MediaType& type3G2();
    static const MediaType& type3GP2();
    static const MediaType& type3GP();
    static const MediaType& type3GPP();
    static const MediaType& typeA();
    static const MediaType& typeAA();
    static const MediaType& typeAAE();
    static const MediaType& typeAAX();
    static const MediaType& typeACR();
    static const MediaType& typeAFM();
    static const MediaType& typeACFM();
    static const MediaType& typeAMFM();
    static const MediaType& typeAI();
    static const MediaType& typeAIT();
    static const MediaType& typeAIFF();
    static const MediaType& typeAIF();
    static const MediaType& typeAIFC();
    static const MediaType& typeAPE();
    static const MediaType& typeARQ();
    static const MediaType& typeARW();
    static const MediaType& typeASF();
    static const MediaType& typeAVI();
    static const MediaType& typeAVIF();
    static const MediaType& typeBMP();
    static const MediaType& typeDIB();
    static const MediaType& typeBPG();
    static const MediaType& typeBTF();
    static const MediaType& typeCHM();
    static const MediaType& typeCOS();
    static const MediaType& typeCR2();
    static const MediaType& typeCR3();
    static const MediaType& typeCRM();
    static const MediaType& typeCRW();
    static const MediaType& typeCIFF();
    static const MediaType& typeCS1();
    static const MediaType& typeCSV();
    static const MediaType& typeCZI();
    static const MediaType& typeDCM();
    static const MediaType& typeDC3();
    static const MediaType& typeDIC();
    static const MediaType& typeDICM();
    static const MediaType& typeDCP();
    static const MediaType& typeDCR();
    static const MediaType& typeDFONT();
    static const MediaType& typeDVIX();
    static const MediaType& typeDJVU();
    static const MediaType& typeDJV();
    static const MediaType& typeDNG();
    static const MediaType& typeDOC();
    static const MediaType& typeDOT();
    static const MediaType& typeDOCX();
    static const MediaType& typeDOCM();
    static const MediaType& typeDOTM();
    static const MediaType& typeDPX();
    static const MediaType& typeDR4();
    static const MediaType& typeDSS();
    static const MediaType& typeDS2();
    static const MediaType& typeDYLIB();
    static const MediaType& typeDV();
    static const MediaType& typeDVB();
    static const MediaType& typeDVR_MS();
    static const MediaType& typeEIP();
    static const MediaType& typeEPS();
    static const MediaType& typeEPSF();
    static const MediaType& typePS();
    static const MediaType& typeEPUB();
    static const MediaType& typeERF();
    static const MediaType& typeEXE();
    static const MediaType& typeDLL();
    static const MediaType& typeEXIF();
    static const MediaType& typeEXR();
    static const MediaType& typeEXV();
    static const MediaType& typeF4A();
    static const MediaType& typeF4B();
    static const MediaType& typeF4P();
    static const MediaType& typeF4V();
    static const MediaType& typeFFF();
    static const MediaType& typeFITS();
    static const MediaType& typeFLA();
    static const MediaType& typeFLAC();
    static const MediaType& typeFLIF();
    static const MediaType& typeFLV();
    static const MediaType& typeFPF();
    static const MediaType& typeFPX();
    static const MediaType& typeGIF();
    static const MediaType& typeGPR();
    static const MediaType& typeGZ();
    static const MediaType& typeGZIP();
    static const MediaType& typeHDP();
    static const MediaType& typeWDP();
    static const MediaType& typeJXR();
    static const MediaType& typeHDR();
    static const MediaType& typeHEIC();
    static const MediaType& typeHEIF();
    static const MediaType& typeHIF();
    static const MediaType& typeHTML();
    static const MediaType& typeHTM();
    static const MediaType& typeXHTML();
    static const MediaType& typeICC();
    static const MediaType& typeICM();
    static const MediaType& typeICS();
    static const MediaType& typeICAL();
    static const MediaType& typeIDML();
    static const MediaType& typeIIQ();
    static const MediaType& typeIND();
    static const MediaType& typeINDD();
    static const MediaType& typeINDT();
    static const MediaType& typeINSP();
    static const MediaType& typeINSV();
    static const MediaType& typeINX();
    static const MediaType& typeISO();
    static const MediaType& typeITC();
    static const MediaType& typeJ2C();
    static const MediaType& typeJ2K();
    static const MediaType& typeJPC();
    static const MediaType& typeJP2();
    static const MediaType& typeJPF();
    static const MediaType& typeJPM();
    static const MediaType& typeJPX();
    static const MediaType& typeJPEG();
    static const MediaType& typeJPG();
    static const MediaType& typeJPE();
    static const MediaType& typeJSON();
    static const MediaType& typeJXL();
    static const MediaType& typeJ25();
    static const MediaType& typeKDC();
    static const MediaType& typeKEY();
    static const MediaType& typeKTH();
    static const MediaType& typeLA();
    static const MediaType& typeLFP();
    static const MediaType& typeLFR();
    static const MediaType& typeLIF();
    static const MediaType& typeLNK();
    static const MediaType& typeLRV();
    static const MediaType& typeM2TS();
    static const MediaType& typeMTS();
    static const MediaType& typeM2T();
    static const MediaType& typeTS();
    static const MediaType& typeM4A();
    static const MediaType& typeM4B();
    static const MediaType& typeM4P();
    static const MediaType& typeM4V();
    static const MediaType& typeMACOS();
    static const MediaType& typeMAX();
    static const MediaType& typeMEF();
    static const MediaType& typeMIE();
    static const MediaType& typeMIFF();
    static const MediaType& typeMIF();
    static const MediaType& typeMKA();
    static const MediaType& typeMKV();
    static const MediaType& typeMKS();
    static const MediaType& typeMOBI();
    static const MediaType& typeAZW();
    static const MediaType& typeAZW3();
    static const MediaType& typeMODD();
    static const MediaType& typeMOI();
    static const MediaType& typeMOS();
    static const MediaType& typeMOV();
    static const MediaType& typeQT();
    static const MediaType& typeMP3();
    static const MediaType& typeMP4();
    static const MediaType& typeMPC();
    static const MediaType& typeMPEG();
    static const MediaType& typeMPG();
    static const MediaType& typeM2V();
    static const MediaType& typeMPO();
    static const MediaType& typeMQV();
    static const MediaType& typeMRW();
    static const MediaType& typeMRC();
    static const MediaType& typeMXF();
    static const MediaType& typeNEF();
    static const MediaType& typeNMTEMPLATE();
    static const MediaType& typeNRW();
    static const MediaType& typeNUMBERS();
    static const MediaType& typeO();
    static const MediaType& typeODB();
    static const MediaType& typeODC();
    static const MediaType& typeODF();
    static const MediaType& typeODG();
    static const MediaType& typeODI();
    static const MediaType& typeODP();
    static const MediaType& typeODS();
    static const MediaType& typeODT();
    static const MediaType& typeOFR();
    static const MediaType& typeOGG();
    static const MediaType& typeOGV();
    static const MediaType& typeONP();
    static const MediaType& typeOPUS();
    static const MediaType& typeORF();
    static const MediaType& typeORI();
    static const MediaType& typeOTF();
    static const MediaType& typePAC();
    static const MediaType& typePAGES();
    static const MediaType& typePCD();
    static const MediaType& typePCX();
    static const MediaType& typePDB();
    static const MediaType& typePRC();
    static const MediaType& typePDF();
    static const MediaType& typePEF();
    static const MediaType& typePFA();
    static const MediaType& typePFB();
    static const MediaType& typePFM();
    static const MediaType& typePGF();
    static const MediaType& typePICT();
    static const MediaType& typePCT();
    static const MediaType& typePLIST();
    static const MediaType& typePMP();
    static const MediaType& typePNG();
    static const MediaType& typeJNG();
    static const MediaType& typeMNG();
    static const MediaType& typePPM();
    static const MediaType& typePBM();
    static const MediaType& typePGM();
    static const MediaType& typePPT();
    static const MediaType& typePPS();
    static const MediaType& typePOT();
    static const MediaType& typePOTX();
    static const MediaType& typePOTM();
    static const MediaType& typePPAX();
    static const MediaType& typePPAM();
    static const MediaType& typePPSX();
    static const MediaType& typePPSM();
    static const MediaType& typePPTX();
    static const MediaType& typePPTM();
    static const MediaType& typePSD();
    static const MediaType& typePSB();
    static const MediaType& typePSDT();
    static const MediaType& typePSP();
    static const MediaType& typePSPIMAGE();
    static const MediaType& typeQTIF();
    static const MediaType& typeQTI();
    static const MediaType& typeQIF();
    static const MediaType& typeR3D();
    static const MediaType& typeRA();
    static const MediaType& typeRAF();
    static const MediaType& typeRAM();
    static const MediaType& typeRPM();
    static const MediaType& typeRAR();
    static const MediaType& typeRAW();
    static const MediaType& typeRIFF();
    static const MediaType& typeRIF();
    static const MediaType& typeRM();
    static const MediaType& typeRV();
    static const MediaType& typeRMVB();
    static const MediaType& typeRSRC();
    static const MediaType& typeRTF();
    static const MediaType& typeRW2();
    static const MediaType& typeRWL();
    static const MediaType& typeRWZ();
    static const MediaType& typeSEQ();
    static const MediaType& typeSKETCH();
    static const MediaType& typeSO();
    static const MediaType& typeSR2();
    static const MediaType& typeSRF();
    static const MediaType& typeSRW();
    static const MediaType& typeSVG();
    static const MediaType& typeSWF();
    static const MediaType& typeTHM();
    static const MediaType& typeTHMX();
    static const MediaType& typeTIFF();
    static const MediaType& typeTIF();
    static const MediaType& typeTTF();
    static const MediaType& typeTTC();
    static const MediaType& typeVCF();
    static const MediaType& typeVCARD();
    static const MediaType& typeVOB();
    static const MediaType& typeVRD();
    static const MediaType& typeVSD();
    static const MediaType& typeWAV();
    static const MediaType& typeWEBM();
    static const MediaType& typeWEBP();
    static const MediaType& typeWMA();
    static const MediaType& typeWMV();
    static const MediaType& typeWTV();
    static const MediaType& typeWV();
    static const MediaType& typeX3F();
    static const MediaType& typeXCF();
    static const MediaType& typeXLS();
    static const MediaType& typeXLT();
    static const MediaType& typeXLSX();
    static const MediaType& typeXLSM();
    static const MediaType& typeXLSB();
    static const MediaType& typeXLTX();
    static const MediaType& typeXLTM();
    static const MediaType& typeXMP();
    static const MediaType& typeZIP();

private:
    struct Data {
        std::string format;
        MediaKind kind;
        AccessMap access;
    };
    std::shared_ptr<const Data> data_;
};

} // namespace corvane

template <> struct std::hash<corvane::MediaType> {
    size_t operator()(const corvane::MediaType& t) const noexcept {
        return std::hash<std::string>()(t.format());
    }
};
