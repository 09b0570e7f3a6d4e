#include "corvane/tag_value/MediaType.hpp"

// The compiled-in table of file formats: one lazily built constant per format,
// and allCases in declaration order (the folder first, then the formats by the
// alphabet of their extensions, like extensions together).

namespace corvane {

namespace {

// Rights per family, one list per group of like formats. A family not listed is absent (n).
// image: 3FR BTF DCR J25
MediaType::AccessMap access3FR() {
    return {{TagStream::streamEXIF, TagAccess::r},
            {TagStream::streamIPTC, TagAccess::r},
            {TagStream::streamXMP, TagAccess::r},
            {TagStream::streamICC_Profile, TagAccess::r}};
}

// image: AI AIT
MediaType::AccessMap accessAI() {
    return {{TagStream::streamEXIF, TagAccess::rwc},   {TagStream::streamIPTC, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},    {TagStream::streamICC_Profile, TagAccess::rwc},
            {TagStream::streamPDF, TagAccess::rwc},    {TagStream::streamPostScript, TagAccess::rwc},
            {TagStream::streamPhotoshop, TagAccess::r}};
}

// image: ARQ ARW
MediaType::AccessMap accessARQ() {
    return {{TagStream::streamEXIF, TagAccess::rwc}, {TagStream::streamIPTC, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},  {TagStream::streamICC_Profile, TagAccess::rwc},
            {TagStream::streamSony, TagAccess::rw},  {TagStream::streamSonyIDC, TagAccess::rw}};
}

// image: AVIF
MediaType::AccessMap accessAVIF() {
    return {{TagStream::streamEXIF, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamICC_Profile, TagAccess::rwc},
            {TagStream::streamQuickTime, TagAccess::rw}};
}

// image: BMP DIB DPX LIF MRC PCX PPM PBM PGM
MediaType::AccessMap accessBMP() {
    return {};
}

// image: BPG
MediaType::AccessMap accessBPG() {
    return {{TagStream::streamEXIF, TagAccess::r},
            {TagStream::streamXMP, TagAccess::r},
            {TagStream::streamICC_Profile, TagAccess::r}};
}

// image: COS CZI
MediaType::AccessMap accessCOS() {
    return {{TagStream::streamXML, TagAccess::r}};
}

// image: CR2
MediaType::AccessMap accessCR2() {
    return {{TagStream::streamEXIF, TagAccess::rwc}, {TagStream::streamIPTC, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},  {TagStream::streamICC_Profile, TagAccess::rwc},
            {TagStream::streamCanon, TagAccess::rw}, {TagStream::streamCanonVRD, TagAccess::rwc}};
}

// image: CR3
MediaType::AccessMap accessCR3() {
    return {{TagStream::streamEXIF, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamCanon, TagAccess::rw},
            {TagStream::streamQuickTime, TagAccess::rw},
            {TagStream::streamCanonVRD, TagAccess::rwc}};
}

// image: CRW CIFF
MediaType::AccessMap accessCRW() {
    return {{TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamCanonRaw, TagAccess::rw},
            {TagStream::streamCanonVRD, TagAccess::rwc}};
}

// image: CS1
MediaType::AccessMap accessCS1() {
    return {{TagStream::streamEXIF, TagAccess::rwc},
            {TagStream::streamIPTC, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamICC_Profile, TagAccess::rwc},
            {TagStream::streamPhotoshop, TagAccess::r}};
}

// image: DCM DC3 DIC DICM
MediaType::AccessMap accessDCM() {
    return {{TagStream::streamDICOM, TagAccess::r}};
}

// image: DCP DNG GPR HDP WDP JXR MEF
MediaType::AccessMap accessDCP() {
    return {{TagStream::streamEXIF, TagAccess::rwc},
            {TagStream::streamIPTC, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamICC_Profile, TagAccess::rwc}};
}

// image: DJVU DJV
MediaType::AccessMap accessDJVU() {
    return {{TagStream::streamDjVu, TagAccess::r}};
}

// image: DR4
MediaType::AccessMap accessDR4() {
    return {{TagStream::streamCanonVRD, TagAccess::rwc}};
}

// image: EIP
MediaType::AccessMap accessEIP() {
    return {{TagStream::streamEXIF, TagAccess::r},
            {TagStream::streamXML, TagAccess::r},
            {TagStream::streamZIP, TagAccess::r}};
}

// image: EPS EPSF PS
MediaType::AccessMap accessEPS() {
    return {{TagStream::streamEXIF, TagAccess::rwc},       {TagStream::streamIPTC, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},        {TagStream::streamICC_Profile, TagAccess::rwc},
            {TagStream::streamPostScript, TagAccess::rwc}, {TagStream::streamPhotoshop, TagAccess::r}};
}

// image: ERF ORF ORI
MediaType::AccessMap accessERF() {
    return {{TagStream::streamEXIF, TagAccess::rwc},
            {TagStream::streamIPTC, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamICC_Profile, TagAccess::rwc},
            {TagStream::streamOlympus, TagAccess::rw}};
}

// image: FFF
MediaType::AccessMap accessFFF() {
    return {{TagStream::streamEXIF, TagAccess::rwc},
            {TagStream::streamIPTC, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamICC_Profile, TagAccess::rwc},
            {TagStream::streamFLIR, TagAccess::r}};
}

// image: FITS
MediaType::AccessMap accessFITS() {
    return {{TagStream::streamFITS, TagAccess::r}};
}

// image: FLIF
MediaType::AccessMap accessFLIF() {
    return {{TagStream::streamEXIF, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamICC_Profile, TagAccess::rwc}};
}

// image: FPF SEQ
MediaType::AccessMap accessFPF() {
    return {{TagStream::streamFLIR, TagAccess::r}};
}

// image: FPX VSD
MediaType::AccessMap accessFPX() {
    return {{TagStream::streamXMP, TagAccess::r},
            {TagStream::streamICC_Profile, TagAccess::r},
            {TagStream::streamFlashPix, TagAccess::r}};
}

// image: GIF
MediaType::AccessMap accessGIF() {
    return {{TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamICC_Profile, TagAccess::rwc},
            {TagStream::streamGIF, TagAccess::rwc}};
}

// image: HDR
MediaType::AccessMap accessHDR() {
    return {{TagStream::streamRadiance, TagAccess::r}};
}

// image: HEIC HEIF HIF
MediaType::AccessMap accessHEIC() {
    return {{TagStream::streamEXIF, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamICC_Profile, TagAccess::rw},
            {TagStream::streamQuickTime, TagAccess::rw}};
}

// image: ICM
MediaType::AccessMap accessICM() {
    return {{TagStream::streamICC_Profile, TagAccess::rwc}};
}

// image: IDML
MediaType::AccessMap accessIDML() {
    return {{TagStream::streamXML, TagAccess::r}, {TagStream::streamZIP, TagAccess::r}};
}

// image: IIQ
MediaType::AccessMap accessIIQ() {
    return {{TagStream::streamEXIF, TagAccess::rwc},
            {TagStream::streamIPTC, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamICC_Profile, TagAccess::rwc},
            {TagStream::streamPhaseOne, TagAccess::rw}};
}

// image: IND INDD INDT
MediaType::AccessMap accessIND() {
    return {{TagStream::streamXMP, TagAccess::rwc}};
}

// image: INSP JPEG JPG JPE MPO THM
MediaType::AccessMap accessINSP() {
    return {{TagStream::streamEXIF, TagAccess::rwc},
            {TagStream::streamIPTC, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamICC_Profile, TagAccess::rwc}};
}

// image: INX
MediaType::AccessMap accessINX() {
    return {{TagStream::streamXMP, TagAccess::r}};
}

// image: ISO
MediaType::AccessMap accessISO() {
    return {{TagStream::streamISO, TagAccess::r}};
}

// image: J2C J2K JPC
MediaType::AccessMap accessJ2C() {
    return {{TagStream::streamEXIF, TagAccess::r},     {TagStream::streamIPTC, TagAccess::r},
            {TagStream::streamXMP, TagAccess::r},      {TagStream::streamICC_Profile, TagAccess::r},
            {TagStream::streamJpeg2000, TagAccess::r}, {TagStream::streamPhotoshop, TagAccess::r}};
}

// image: JP2 JPF JPM JPX
MediaType::AccessMap accessJP2() {
    return {{TagStream::streamEXIF, TagAccess::rwc},     {TagStream::streamIPTC, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},      {TagStream::streamICC_Profile, TagAccess::r},
            {TagStream::streamJpeg2000, TagAccess::rwc}, {TagStream::streamPhotoshop, TagAccess::r}};
}

// image: JXL
MediaType::AccessMap accessJXL() {
    return {{TagStream::streamEXIF, TagAccess::rwc}, {TagStream::streamXMP, TagAccess::rwc}};
}

// image: KDC
MediaType::AccessMap accessKDC() {
    return {{TagStream::streamEXIF, TagAccess::r},
            {TagStream::streamIPTC, TagAccess::r},
            {TagStream::streamXMP, TagAccess::r},
            {TagStream::streamICC_Profile, TagAccess::r},
            {TagStream::streamKodak, TagAccess::r}};
}

// image: LFP LFR
MediaType::AccessMap accessLFP() {
    return {{TagStream::streamLytro, TagAccess::r}};
}

// image: MIFF MIF
MediaType::AccessMap accessMIFF() {
    return {{TagStream::streamEXIF, TagAccess::r}, {TagStream::streamIPTC, TagAccess::r},
            {TagStream::streamXMP, TagAccess::r},  {TagStream::streamICC_Profile, TagAccess::r},
            {TagStream::streamMIFF, TagAccess::r}, {TagStream::streamPhotoshop, TagAccess::r}};
}

// image: MOBI AZW AZW3
MediaType::AccessMap accessMOBI() {
    return {{TagStream::streamPalm, TagAccess::r}};
}

// image: MODD
MediaType::AccessMap accessMODD() {
    return {{TagStream::streamPLIST, TagAccess::r}};
}

// image: MOS
MediaType::AccessMap accessMOS() {
    return {{TagStream::streamEXIF, TagAccess::rwc},
            {TagStream::streamIPTC, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamICC_Profile, TagAccess::rwc},
            {TagStream::streamLeaf, TagAccess::r}};
}

// image: MRW
MediaType::AccessMap accessMRW() {
    return {{TagStream::streamEXIF, TagAccess::rwc},       {TagStream::streamIPTC, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},        {TagStream::streamICC_Profile, TagAccess::rwc},
            {TagStream::streamMinoltaRaw, TagAccess::rwc}, {TagStream::streamMinolta, TagAccess::rwc}};
}

// image: NEF NRW
MediaType::AccessMap accessNEF() {
    return {{TagStream::streamEXIF, TagAccess::rwc}, {TagStream::streamIPTC, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},  {TagStream::streamICC_Profile, TagAccess::rwc},
            {TagStream::streamNikon, TagAccess::rw}, {TagStream::streamNikonCapture, TagAccess::rw}};
}

// image: PCD
MediaType::AccessMap accessPCD() {
    return {{TagStream::streamPhotoCD, TagAccess::r}};
}

// image: PDF
MediaType::AccessMap accessPDF() {
    return {{TagStream::streamEXIF, TagAccess::r},  {TagStream::streamIPTC, TagAccess::r},
            {TagStream::streamXMP, TagAccess::rwc}, {TagStream::streamICC_Profile, TagAccess::r},
            {TagStream::streamPDF, TagAccess::rwc}, {TagStream::streamPhotoshop, TagAccess::r}};
}

// image: PEF
MediaType::AccessMap accessPEF() {
    return {{TagStream::streamEXIF, TagAccess::rwc},
            {TagStream::streamIPTC, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamICC_Profile, TagAccess::rwc},
            {TagStream::streamPentax, TagAccess::rw}};
}

// image: PGF
MediaType::AccessMap accessPGF() {
    return {{TagStream::streamPNG, TagAccess::r}};
}

// image: PICT PCT
MediaType::AccessMap accessPICT() {
    return {{TagStream::streamPICT, TagAccess::r}, {TagStream::streamPhotoshop, TagAccess::r}};
}

// image: PMP
MediaType::AccessMap accessPMP() {
    return {{TagStream::streamSony, TagAccess::r}};
}

// image: PNG JNG MNG
MediaType::AccessMap accessPNG() {
    return {{TagStream::streamEXIF, TagAccess::rwc},
            {TagStream::streamIPTC, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamICC_Profile, TagAccess::rwc},
            {TagStream::streamPNG, TagAccess::rwc}};
}

// image: PSD PSB PSDT
MediaType::AccessMap accessPSD() {
    return {{TagStream::streamEXIF, TagAccess::rwc},
            {TagStream::streamIPTC, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamICC_Profile, TagAccess::rwc},
            {TagStream::streamPhotoshop, TagAccess::rwc}};
}

// image: PSP PSPIMAGE
MediaType::AccessMap accessPSP() {
    return {{TagStream::streamEXIF, TagAccess::r}, {TagStream::streamPSP, TagAccess::r}};
}

// image: QTIF QTI QIF
MediaType::AccessMap accessQTIF() {
    return {{TagStream::streamEXIF, TagAccess::rw},
            {TagStream::streamIPTC, TagAccess::rw},
            {TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamQuickTime, TagAccess::rwc}};
}

// image: RAF
MediaType::AccessMap accessRAF() {
    return {{TagStream::streamEXIF, TagAccess::rwc},
            {TagStream::streamIPTC, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamICC_Profile, TagAccess::rwc},
            {TagStream::streamFujiFilm, TagAccess::rw}};
}

// image: RAW
MediaType::AccessMap accessRAW() {
    return {{TagStream::streamEXIF, TagAccess::rwc},        {TagStream::streamIPTC, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},         {TagStream::streamICC_Profile, TagAccess::rwc},
            {TagStream::streamPanasonicRaw, TagAccess::rw}, {TagStream::streamPanasonic, TagAccess::rw},
            {TagStream::streamKyoceraRaw, TagAccess::rw}};
}

// image: RW2 RWL
MediaType::AccessMap accessRW2() {
    return {{TagStream::streamEXIF, TagAccess::rwc},        {TagStream::streamIPTC, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},         {TagStream::streamICC_Profile, TagAccess::rwc},
            {TagStream::streamPanasonicRaw, TagAccess::rw}, {TagStream::streamPanasonic, TagAccess::rw}};
}

// image: RWZ
MediaType::AccessMap accessRWZ() {
    return {{TagStream::streamEXIF, TagAccess::r},
            {TagStream::streamIPTC, TagAccess::r},
            {TagStream::streamXMP, TagAccess::r},
            {TagStream::streamICC_Profile, TagAccess::r},
            {TagStream::streamRawzor, TagAccess::r}};
}

// image: SKETCH
MediaType::AccessMap accessSKETCH() {
    return {{TagStream::streamJSON, TagAccess::r}, {TagStream::streamZIP, TagAccess::r}};
}

// image: SR2
MediaType::AccessMap accessSR2() {
    return {{TagStream::streamEXIF, TagAccess::rwc},
            {TagStream::streamIPTC, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamICC_Profile, TagAccess::rwc},
            {TagStream::streamSony, TagAccess::rw}};
}

// image: SRF
MediaType::AccessMap accessSRF() {
    return {{TagStream::streamEXIF, TagAccess::r},
            {TagStream::streamIPTC, TagAccess::r},
            {TagStream::streamXMP, TagAccess::r},
            {TagStream::streamICC_Profile, TagAccess::r},
            {TagStream::streamSony, TagAccess::r}};
}

// image: SRW
MediaType::AccessMap accessSRW() {
    return {{TagStream::streamEXIF, TagAccess::rwc},
            {TagStream::streamIPTC, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamICC_Profile, TagAccess::rwc},
            {TagStream::streamSamsung, TagAccess::rw}};
}

// image: SVG
MediaType::AccessMap accessSVG() {
    return {{TagStream::streamSVG, TagAccess::r}};
}

// image: TIFF TIF
MediaType::AccessMap accessTIFF() {
    return {{TagStream::streamEXIF, TagAccess::rwc},    {TagStream::streamIPTC, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},     {TagStream::streamICC_Profile, TagAccess::rwc},
            {TagStream::streamGeoTiff, TagAccess::rwc}, {TagStream::streamTrailer, TagAccess::rw}};
}

// image: WEBP
MediaType::AccessMap accessWEBP() {
    return {{TagStream::streamEXIF, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamICC_Profile, TagAccess::rwc},
            {TagStream::streamRIFF, TagAccess::r}};
}

// image: X3F
MediaType::AccessMap accessX3F() {
    return {{TagStream::streamEXIF, TagAccess::rwc}, {TagStream::streamIPTC, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},  {TagStream::streamICC_Profile, TagAccess::rwc},
            {TagStream::streamSigma, TagAccess::rw}, {TagStream::streamSigmaRaw, TagAccess::r}};
}

// image: XCF
MediaType::AccessMap accessXCF() {
    return {{TagStream::streamEXIF, TagAccess::r},
            {TagStream::streamIPTC, TagAccess::r},
            {TagStream::streamXMP, TagAccess::r},
            {TagStream::streamICC_Profile, TagAccess::r},
            {TagStream::streamGIMP, TagAccess::r}};
}

// image: ZIP
MediaType::AccessMap accessZIP() {
    return {{TagStream::streamZIP, TagAccess::r}};
}

// movie: 360
MediaType::AccessMap access360() {
    return {{TagStream::streamEXIF, TagAccess::rw},
            {TagStream::streamIPTC, TagAccess::rw},
            {TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamQuickTime, TagAccess::rwc},
            {TagStream::streamGoPro, TagAccess::r}};
}

// movie: 3G2 3GP2 3GP 3GPP DVB F4A F4B F4P F4V LRV M4A M4B M4P M4V MOV MP4 MQV
MediaType::AccessMap access3G2() {
    return {{TagStream::streamEXIF, TagAccess::rw},
            {TagStream::streamIPTC, TagAccess::rw},
            {TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamQuickTime, TagAccess::rwc}};
}

// movie: AVI
MediaType::AccessMap accessAVI() {
    return {{TagStream::streamEXIF, TagAccess::r}, {TagStream::streamRIFF, TagAccess::r}};
}

// movie: CRM
MediaType::AccessMap accessCRM() {
    return {{TagStream::streamEXIF, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamCanon, TagAccess::rw},
            {TagStream::streamQuickTime, TagAccess::rw}};
}

// movie: DVIX DVR-MS WMV
MediaType::AccessMap accessDVIX() {
    return {{TagStream::streamXMP, TagAccess::r}, {TagStream::streamASF, TagAccess::r}};
}

// movie: DV
MediaType::AccessMap accessDV() {
    return {{TagStream::streamDV, TagAccess::r}};
}

// movie: FLV
MediaType::AccessMap accessFLV() {
    return {{TagStream::streamXMP, TagAccess::r}, {TagStream::streamFlash, TagAccess::r}};
}

// movie: INSV
MediaType::AccessMap accessINSV() {
    return {{TagStream::streamXMP, TagAccess::r}, {TagStream::streamQuickTime, TagAccess::r}};
}

// movie: M2TS MTS M2T TS
MediaType::AccessMap accessM2TS() {
    return {{TagStream::streamM2TS, TagAccess::r},
            {TagStream::streamH264, TagAccess::r},
            {TagStream::streamMISB, TagAccess::r}};
}

// movie: MAX
MediaType::AccessMap accessMAX() {
    return {{TagStream::streamXMP, TagAccess::r},
            {TagStream::streamICC_Profile, TagAccess::r},
            {TagStream::streamFlashPix, TagAccess::r}};
}

// movie: MKA MKV MKS WEBM
MediaType::AccessMap accessMKA() {
    return {{TagStream::streamMatroska, TagAccess::r}};
}

// movie: QT
MediaType::AccessMap accessQT() {
    return {{TagStream::streamEXIF, TagAccess::rw},
            {TagStream::streamIPTC, TagAccess::rw},
            {TagStream::streamXMP, TagAccess::rw},
            {TagStream::streamQuickTime, TagAccess::rw}};
}

// movie: MPEG MPG M2V
MediaType::AccessMap accessMPEG() {
    return {{TagStream::streamMPEG, TagAccess::r}, {TagStream::streamID3, TagAccess::r}};
}

// movie: R3D
MediaType::AccessMap accessR3D() {
    return {{TagStream::streamRed, TagAccess::r}};
}

// movie: RM RV RMVB
MediaType::AccessMap accessRM() {
    return {{TagStream::streamReal, TagAccess::r}};
}

// movie: VOB
MediaType::AccessMap accessVOB() {
    return {{TagStream::streamMPEG, TagAccess::r}};
}

// movie: WTV
MediaType::AccessMap accessWTV() {
    return {{TagStream::streamWTV, TagAccess::r}};
}

// movie: WV
MediaType::AccessMap accessWV() {
    return {{TagStream::streamEXIF, TagAccess::r},
            {TagStream::streamXMP, TagAccess::r},
            {TagStream::streamRIFF, TagAccess::r}};
}

// audio: AA
MediaType::AccessMap accessAA() {
    return {{TagStream::streamAudible, TagAccess::r}};
}

// audio: AAX
MediaType::AccessMap accessAAX() {
    return {{TagStream::streamEXIF, TagAccess::rw},
            {TagStream::streamIPTC, TagAccess::rw},
            {TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamQuickTime, TagAccess::rwc}};
}

// audio: AIFF AIF AIFC
MediaType::AccessMap accessAIFF() {
    return {{TagStream::streamAIFF, TagAccess::r}, {TagStream::streamID3, TagAccess::r}};
}

// audio: APE
MediaType::AccessMap accessAPE() {
    return {{TagStream::streamAPE, TagAccess::r}, {TagStream::streamID3, TagAccess::r}};
}

// audio: DSS DS2
MediaType::AccessMap accessDSS() {
    return {{TagStream::streamOlympus, TagAccess::r}};
}

// audio: FLAC
MediaType::AccessMap accessFLAC() {
    return {{TagStream::streamFLAC, TagAccess::r}, {TagStream::streamID3, TagAccess::r}};
}

// audio: ITC
MediaType::AccessMap accessITC() {
    return {{TagStream::streamITC, TagAccess::r}};
}

// audio: LA OFR PAC WAV
MediaType::AccessMap accessLA() {
    return {{TagStream::streamEXIF, TagAccess::r},
            {TagStream::streamXMP, TagAccess::r},
            {TagStream::streamRIFF, TagAccess::r}};
}

// audio: MP3
MediaType::AccessMap accessMP3() {
    return {{TagStream::streamMPEG, TagAccess::r},
            {TagStream::streamID3, TagAccess::r},
            {TagStream::streamAPE, TagAccess::r}};
}

// audio: MPC
MediaType::AccessMap accessMPC() {
    return {{TagStream::streamMPC, TagAccess::r},
            {TagStream::streamID3, TagAccess::r},
            {TagStream::streamAPE, TagAccess::r}};
}

// audio: OGG OGV
MediaType::AccessMap accessOGG() {
    return {{TagStream::streamFLAC, TagAccess::r},
            {TagStream::streamID3, TagAccess::r},
            {TagStream::streamTheora, TagAccess::r},
            {TagStream::streamVorbis, TagAccess::r}};
}

// audio: ONP
MediaType::AccessMap accessONP() {
    return {{TagStream::streamJSON, TagAccess::r}, {TagStream::streamPLIST, TagAccess::r}};
}

// audio: OPUS
MediaType::AccessMap accessOPUS() {
    return {{TagStream::streamFLAC, TagAccess::r},
            {TagStream::streamID3, TagAccess::r},
            {TagStream::streamOpus, TagAccess::r},
            {TagStream::streamVorbis, TagAccess::r}};
}

// audio: RA
MediaType::AccessMap accessRA() {
    return {{TagStream::streamReal, TagAccess::r}, {TagStream::streamID3, TagAccess::r}};
}

// audio: RAM RPM
MediaType::AccessMap accessRAM() {
    return {{TagStream::streamReal, TagAccess::r}};
}

// audio: WMA
MediaType::AccessMap accessWMA() {
    return {{TagStream::streamXMP, TagAccess::r}, {TagStream::streamASF, TagAccess::r}};
}

// sidecar: EXIF
MediaType::AccessMap accessEXIF() {
    return {{TagStream::streamEXIF, TagAccess::rwc}};
}

// sidecar: EXV
MediaType::AccessMap accessEXV() {
    return {{TagStream::streamEXIF, TagAccess::rwc},
            {TagStream::streamIPTC, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamICC_Profile, TagAccess::rwc}};
}

// sidecar: ICC
MediaType::AccessMap accessICC() {
    return {{TagStream::streamICC_Profile, TagAccess::rwc}};
}

// sidecar: MIE
MediaType::AccessMap accessMIE() {
    return {{TagStream::streamEXIF, TagAccess::rwc},
            {TagStream::streamIPTC, TagAccess::rwc},
            {TagStream::streamXMP, TagAccess::rwc},
            {TagStream::streamICC_Profile, TagAccess::rwc},
            {TagStream::streamMIE, TagAccess::rwc}};
}

// sidecar: VRD
MediaType::AccessMap accessVRD() {
    return {{TagStream::streamXMP, TagAccess::rwc}, {TagStream::streamCanonVRD, TagAccess::rwc}};
}

// sidecar: XMP
MediaType::AccessMap accessXMP() {
    return {{TagStream::streamXMP, TagAccess::rwc}};
}

// other: A CHM DYLIB EXE DLL O SO
MediaType::AccessMap accessA() {
    return {{TagStream::streamEXE, TagAccess::r}};
}

// other: AAE PLIST
MediaType::AccessMap accessAAE() {
    return {{TagStream::streamPLIST, TagAccess::r}};
}

// other: ACR
MediaType::AccessMap accessACR() {
    return {{TagStream::streamDICOM, TagAccess::rw}};
}

// other: AFM ACFM AMFM DFONT OTF PFA PFB PFM TTF TTC
MediaType::AccessMap accessAFM() {
    return {{TagStream::streamFont, TagAccess::r}};
}

// other: ASF
MediaType::AccessMap accessASF() {
    return {{TagStream::streamXMP, TagAccess::r}, {TagStream::streamASF, TagAccess::r}};
}

// other: CSV ICS ICAL
MediaType::AccessMap accessCSV() {
    return {};
}

// other: DOC DOT FLA PPT PPS POT XLS XLT
MediaType::AccessMap accessDOC() {
    return {{TagStream::streamXMP, TagAccess::r},
            {TagStream::streamICC_Profile, TagAccess::r},
            {TagStream::streamFlashPix, TagAccess::r}};
}

// other: DOCX DOCM DOTM EPUB KEY KTH NMTEMPLATE NUMBERS ODB ODC ODF ODG ODI ODP ODS ODT PAGES POTX POTM PPAX
// PPAM PPSX PPSM PPTX PPTM THMX XLSX XLSM XLSB XLTX XLTM
MediaType::AccessMap accessDOCX() {
    return {{TagStream::streamXML, TagAccess::r}, {TagStream::streamZIP, TagAccess::r}};
}

// other: EXR
MediaType::AccessMap accessEXR() {
    return {{TagStream::streamOpenEXR, TagAccess::r}};
}

// other: GZ GZIP RAR
MediaType::AccessMap accessGZ() {
    return {{TagStream::streamZIP, TagAccess::r}};
}

// other: HTML HTM XHTML
MediaType::AccessMap accessHTML() {
    return {{TagStream::streamHTML, TagAccess::r}};
}

// other: JSON
MediaType::AccessMap accessJSON() {
    return {{TagStream::streamJSON, TagAccess::r}};
}

// other: LNK
MediaType::AccessMap accessLNK() {
    return {{TagStream::streamLNK, TagAccess::r}};
}

// other: MACOS
MediaType::AccessMap accessMACOS() {
    return {{TagStream::streamRSRC, TagAccess::r}};
}

// other: MOI
MediaType::AccessMap accessMOI() {
    return {{TagStream::streamMOI, TagAccess::r}};
}

// other: MXF
MediaType::AccessMap accessMXF() {
    return {{TagStream::streamMXF, TagAccess::r}};
}

// other: PDB PRC
MediaType::AccessMap accessPDB() {
    return {{TagStream::streamPalm, TagAccess::r}};
}

// other: RIFF RIF
MediaType::AccessMap accessRIFF() {
    return {{TagStream::streamEXIF, TagAccess::r},
            {TagStream::streamXMP, TagAccess::r},
            {TagStream::streamRIFF, TagAccess::r}};
}

// other: RSRC
MediaType::AccessMap accessRSRC() {
    return {{TagStream::streamRSRC, TagAccess::r},
            {TagStream::streamPhotoshop, TagAccess::r},
            {TagStream::streamPostScript, TagAccess::r},
            {TagStream::streamFont, TagAccess::r}};
}

// other: RTF
MediaType::AccessMap accessRTF() {
    return {{TagStream::streamRTF, TagAccess::r}};
}

// other: SWF
MediaType::AccessMap accessSWF() {
    return {{TagStream::streamXMP, TagAccess::r}, {TagStream::streamFlash, TagAccess::r}};
}

// other: VCF VCARD
MediaType::AccessMap accessVCF() {
    return {{TagStream::streamVCard, TagAccess::r}};
}

// The families shared by every JPEG-like format and the EXV sidecar. Merged
// into each one's own list; the two never disagree on a family.
MediaType::AccessMap withJPEGSet(MediaType::AccessMap access) {
    static const std::pair<const TagStream*, TagAccess> jpegSet[] = {
        {&TagStream::streamJFIF, TagAccess::rwc},
        {&TagStream::streamEXIF, TagAccess::rwc},
        {&TagStream::streamXMP, TagAccess::rwc},
        {&TagStream::streamFLIR, TagAccess::r},
        {&TagStream::streamICC_Profile, TagAccess::rwc},
        {&TagStream::streamMPF, TagAccess::rwc},
        {&TagStream::streamKodak, TagAccess::rw},
        {&TagStream::streamStim, TagAccess::r},
        {&TagStream::streamRicoh, TagAccess::r},
        {&TagStream::streamSamsung, TagAccess::r},
        {&TagStream::streamHP, TagAccess::r},
        {&TagStream::streamGoPro, TagAccess::r},
        {&TagStream::streamDJI, TagAccess::r},
        {&TagStream::streamPentax, TagAccess::r},
        {&TagStream::streamQualcomm, TagAccess::r},
        {&TagStream::streamJPEG, TagAccess::r},
        {&TagStream::streamJUMBF, TagAccess::r},
        {&TagStream::streamAFCP, TagAccess::rw},
        {&TagStream::streamCanonVRD, TagAccess::rwc},
        {&TagStream::streamFotoStation, TagAccess::rw},
        {&TagStream::streamPhotoMechanic, TagAccess::rw},
        {&TagStream::streamMIE, TagAccess::rw}};
    for (const auto& [stream, right] : jpegSet)
        access.emplace(*stream, right);
    return access;
}

MediaType::AccessMap everyStreamCreatable() {
    MediaType::AccessMap access;
    for (const TagStream& stream : TagStream::allCases())
        access.emplace(stream, TagAccess::rwc);
    return access;
}

} // namespace

// A folder has no extension and takes every tag of every family.
const MediaType& MediaType::typeFolder() {
    static const MediaType t("", MediaKind::other, everyStreamCreatable());
    return t;
}

const MediaType& MediaType::type360() {
    static const MediaType t("360", MediaKind::movie, access360());
    return t;
}
const MediaType& MediaType::type3FR() {
    static const MediaType t("3FR", MediaKind::image, access3FR());
    return t;
}
const MediaType& MediaType::type3G2() {
    static const MediaType t("3G2", MediaKind::movie, access3G2());
    return t;
}
const MediaType& MediaType::type3GP2() {
    static const MediaType t("3GP2", MediaKind::movie, access3G2());
    return t;
}
const MediaType& MediaType::type3GP() {
    static const MediaType t("3GP", MediaKind::movie, access3G2());
    return t;
}
const MediaType& MediaType::type3GPP() {
    static const MediaType t("3GPP", MediaKind::movie, access3G2());
    return t;
}
const MediaType& MediaType::typeA() {
    static const MediaType t("A", MediaKind::other, accessA());
    return t;
}
const MediaType& MediaType::typeAA() {
    static const MediaType t("AA", MediaKind::audio, accessAA());
    return t;
}
const MediaType& MediaType::typeAAE() {
    static const MediaType t("AAE", MediaKind::other, accessAAE());
    return t;
}
const MediaType& MediaType::typeAAX() {
    static const MediaType t("AAX", MediaKind::audio, accessAAX());
    return t;
}
const MediaType& MediaType::typeACR() {
    static const MediaType t("ACR", MediaKind::other, accessACR());
    return t;
}
const MediaType& MediaType::typeAFM() {
    static const MediaType t("AFM", MediaKind::other, accessAFM());
    return t;
}
const MediaType& MediaType::typeACFM() {
    static const MediaType t("ACFM", MediaKind::other, accessAFM());
    return t;
}
const MediaType& MediaType::typeAMFM() {
    static const MediaType t("AMFM", MediaKind::other, accessAFM());
    return t;
}
const MediaType& MediaType::typeAI() {
    static const MediaType t("AI", MediaKind::image, accessAI());
    return t;
}
const MediaType& MediaType::typeAIT() {
    static const MediaType t("AIT", MediaKind::image, accessAI());
    return t;
}
const MediaType& MediaType::typeAIFF() {
    static const MediaType t("AIFF", MediaKind::audio, accessAIFF());
    return t;
}
const MediaType& MediaType::typeAIF() {
    static const MediaType t("AIF", MediaKind::audio, accessAIFF());
    return t;
}
const MediaType& MediaType::typeAIFC() {
    static const MediaType t("AIFC", MediaKind::audio, accessAIFF());
    return t;
}
const MediaType& MediaType::typeAPE() {
    static const MediaType t("APE", MediaKind::audio, accessAPE());
    return t;
}
const MediaType& MediaType::typeARQ() {
    static const MediaType t("ARQ", MediaKind::image, accessARQ());
    return t;
}
const MediaType& MediaType::typeARW() {
    static const MediaType t("ARW", MediaKind::image, accessARQ());
    return t;
}
const MediaType& MediaType::typeASF() {
    static const MediaType t("ASF", MediaKind::other, accessASF());
    return t;
}
const MediaType& MediaType::typeAVI() {
    static const MediaType t("AVI", MediaKind::movie, accessAVI());
    return t;
}
const MediaType& MediaType::typeAVIF() {
    static const MediaType t("AVIF", MediaKind::image, accessAVIF());
    return t;
}
const MediaType& MediaType::typeBMP() {
    static const MediaType t("BMP", MediaKind::image, accessBMP());
    return t;
}
const MediaType& MediaType::typeDIB() {
    static const MediaType t("DIB", MediaKind::image, accessBMP());
    return t;
}
const MediaType& MediaType::typeBPG() {
    static const MediaType t("BPG", MediaKind::image, accessBPG());
    return t;
}
const MediaType& MediaType::typeBTF() {
    static const MediaType t("BTF", MediaKind::image, access3FR());
    return t;
}
const MediaType& MediaType::typeCHM() {
    static const MediaType t("CHM", MediaKind::other, accessA());
    return t;
}
const MediaType& MediaType::typeCOS() {
    static const MediaType t("COS", MediaKind::image, accessCOS());
    return t;
}
const MediaType& MediaType::typeCR2() {
    static const MediaType t("CR2", MediaKind::image, accessCR2());
    return t;
}
const MediaType& MediaType::typeCR3() {
    static const MediaType t("CR3", MediaKind::image, accessCR3());
    return t;
}
const MediaType& MediaType::typeCRM() {
    static const MediaType t("CRM", MediaKind::movie, accessCRM());
    return t;
}
const MediaType& MediaType::typeCRW() {
    static const MediaType t("CRW", MediaKind::image, accessCRW());
    return t;
}
const MediaType& MediaType::typeCIFF() {
    static const MediaType t("CIFF", MediaKind::image, accessCRW());
    return t;
}
const MediaType& MediaType::typeCS1() {
    static const MediaType t("CS1", MediaKind::image, accessCS1());
    return t;
}
const MediaType& MediaType::typeCSV() {
    static const MediaType t("CSV", MediaKind::other, accessCSV());
    return t;
}
const MediaType& MediaType::typeCZI() {
    static const MediaType t("CZI", MediaKind::image, accessCOS());
    return t;
}
const MediaType& MediaType::typeDCM() {
    static const MediaType t("DCM", MediaKind::image, accessDCM());
    return t;
}
const MediaType& MediaType::typeDC3() {
    static const MediaType t("DC3", MediaKind::image, accessDCM());
    return t;
}
const MediaType& MediaType::typeDIC() {
    static const MediaType t("DIC", MediaKind::image, accessDCM());
    return t;
}
const MediaType& MediaType::typeDICM() {
    static const MediaType t("DICM", MediaKind::image, accessDCM());
    return t;
}
const MediaType& MediaType::typeDCP() {
    static const MediaType t("DCP", MediaKind::image, accessDCP());
    return t;
}
const MediaType& MediaType::typeDCR() {
    static const MediaType t("DCR", MediaKind::image, access3FR());
    return t;
}
const MediaType& MediaType::typeDFONT() {
    static const MediaType t("DFONT", MediaKind::other, accessAFM());
    return t;
}
const MediaType& MediaType::typeDVIX() {
    static const MediaType t("DVIX", MediaKind::movie, accessDVIX());
    return t;
}
const MediaType& MediaType::typeDJVU() {
    static const MediaType t("DJVU", MediaKind::image, accessDJVU());
    return t;
}
const MediaType& MediaType::typeDJV() {
    static const MediaType t("DJV", MediaKind::image, accessDJVU());
    return t;
}
const MediaType& MediaType::typeDNG() {
    static const MediaType t("DNG", MediaKind::image, accessDCP());
    return t;
}
const MediaType& MediaType::typeDOC() {
    static const MediaType t("DOC", MediaKind::other, accessDOC());
    return t;
}
const MediaType& MediaType::typeDOT() {
    static const MediaType t("DOT", MediaKind::other, accessDOC());
    return t;
}
const MediaType& MediaType::typeDOCX() {
    static const MediaType t("DOCX", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typeDOCM() {
    static const MediaType t("DOCM", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typeDOTM() {
    static const MediaType t("DOTM", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typeDPX() {
    static const MediaType t("DPX", MediaKind::image, accessBMP());
    return t;
}
const MediaType& MediaType::typeDR4() {
    static const MediaType t("DR4", MediaKind::image, accessDR4());
    return t;
}
const MediaType& MediaType::typeDSS() {
    static const MediaType t("DSS", MediaKind::audio, accessDSS());
    return t;
}
const MediaType& MediaType::typeDS2() {
    static const MediaType t("DS2", MediaKind::audio, accessDSS());
    return t;
}
const MediaType& MediaType::typeDYLIB() {
    static const MediaType t("DYLIB", MediaKind::other, accessA());
    return t;
}
const MediaType& MediaType::typeDV() {
    static const MediaType t("DV", MediaKind::movie, accessDV());
    return t;
}
const MediaType& MediaType::typeDVB() {
    static const MediaType t("DVB", MediaKind::movie, access3G2());
    return t;
}
const MediaType& MediaType::typeDVR_MS() {
    static const MediaType t("DVR-MS", MediaKind::movie, accessDVIX());
    return t;
}
const MediaType& MediaType::typeEIP() {
    static const MediaType t("EIP", MediaKind::image, accessEIP());
    return t;
}
const MediaType& MediaType::typeEPS() {
    static const MediaType t("EPS", MediaKind::image, accessEPS());
    return t;
}
const MediaType& MediaType::typeEPSF() {
    static const MediaType t("EPSF", MediaKind::image, accessEPS());
    return t;
}
const MediaType& MediaType::typePS() {
    static const MediaType t("PS", MediaKind::image, accessEPS());
    return t;
}
const MediaType& MediaType::typeEPUB() {
    static const MediaType t("EPUB", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typeERF() {
    static const MediaType t("ERF", MediaKind::image, accessERF());
    return t;
}
const MediaType& MediaType::typeEXE() {
    static const MediaType t("EXE", MediaKind::other, accessA());
    return t;
}
const MediaType& MediaType::typeDLL() {
    static const MediaType t("DLL", MediaKind::other, accessA());
    return t;
}
const MediaType& MediaType::typeEXIF() {
    static const MediaType t("EXIF", MediaKind::sidecar, accessEXIF());
    return t;
}
const MediaType& MediaType::typeEXR() {
    static const MediaType t("EXR", MediaKind::other, accessEXR());
    return t;
}
const MediaType& MediaType::typeEXV() {
    static const MediaType t("EXV", MediaKind::sidecar, withJPEGSet(accessEXV()));
    return t;
}
const MediaType& MediaType::typeF4A() {
    static const MediaType t("F4A", MediaKind::movie, access3G2());
    return t;
}
const MediaType& MediaType::typeF4B() {
    static const MediaType t("F4B", MediaKind::movie, access3G2());
    return t;
}
const MediaType& MediaType::typeF4P() {
    static const MediaType t("F4P", MediaKind::movie, access3G2());
    return t;
}
const MediaType& MediaType::typeF4V() {
    static const MediaType t("F4V", MediaKind::movie, access3G2());
    return t;
}
const MediaType& MediaType::typeFFF() {
    static const MediaType t("FFF", MediaKind::image, accessFFF());
    return t;
}
const MediaType& MediaType::typeFITS() {
    static const MediaType t("FITS", MediaKind::image, accessFITS());
    return t;
}
const MediaType& MediaType::typeFLA() {
    static const MediaType t("FLA", MediaKind::other, accessDOC());
    return t;
}
const MediaType& MediaType::typeFLAC() {
    static const MediaType t("FLAC", MediaKind::audio, accessFLAC());
    return t;
}
const MediaType& MediaType::typeFLIF() {
    static const MediaType t("FLIF", MediaKind::image, accessFLIF());
    return t;
}
const MediaType& MediaType::typeFLV() {
    static const MediaType t("FLV", MediaKind::movie, accessFLV());
    return t;
}
const MediaType& MediaType::typeFPF() {
    static const MediaType t("FPF", MediaKind::image, accessFPF());
    return t;
}
const MediaType& MediaType::typeFPX() {
    static const MediaType t("FPX", MediaKind::image, accessFPX());
    return t;
}
const MediaType& MediaType::typeGIF() {
    static const MediaType t("GIF", MediaKind::image, accessGIF());
    return t;
}
const MediaType& MediaType::typeGPR() {
    static const MediaType t("GPR", MediaKind::image, accessDCP());
    return t;
}
const MediaType& MediaType::typeGZ() {
    static const MediaType t("GZ", MediaKind::other, accessGZ());
    return t;
}
const MediaType& MediaType::typeGZIP() {
    static const MediaType t("GZIP", MediaKind::other, accessGZ());
    return t;
}
const MediaType& MediaType::typeHDP() {
    static const MediaType t("HDP", MediaKind::image, accessDCP());
    return t;
}
const MediaType& MediaType::typeWDP() {
    static const MediaType t("WDP", MediaKind::image, accessDCP());
    return t;
}
const MediaType& MediaType::typeJXR() {
    static const MediaType t("JXR", MediaKind::image, accessDCP());
    return t;
}
const MediaType& MediaType::typeHDR() {
    static const MediaType t("HDR", MediaKind::image, accessHDR());
    return t;
}
const MediaType& MediaType::typeHEIC() {
    static const MediaType t("HEIC", MediaKind::image, accessHEIC());
    return t;
}
const MediaType& MediaType::typeHEIF() {
    static const MediaType t("HEIF", MediaKind::image, accessHEIC());
    return t;
}
const MediaType& MediaType::typeHIF() {
    static const MediaType t("HIF", MediaKind::image, accessHEIC());
    return t;
}
const MediaType& MediaType::typeHTML() {
    static const MediaType t("HTML", MediaKind::other, accessHTML());
    return t;
}
const MediaType& MediaType::typeHTM() {
    static const MediaType t("HTM", MediaKind::other, accessHTML());
    return t;
}
const MediaType& MediaType::typeXHTML() {
    static const MediaType t("XHTML", MediaKind::other, accessHTML());
    return t;
}
const MediaType& MediaType::typeICC() {
    static const MediaType t("ICC", MediaKind::sidecar, accessICC());
    return t;
}
const MediaType& MediaType::typeICM() {
    static const MediaType t("ICM", MediaKind::image, accessICM());
    return t;
}
const MediaType& MediaType::typeICS() {
    static const MediaType t("ICS", MediaKind::other, accessCSV());
    return t;
}
const MediaType& MediaType::typeICAL() {
    static const MediaType t("ICAL", MediaKind::other, accessCSV());
    return t;
}
const MediaType& MediaType::typeIDML() {
    static const MediaType t("IDML", MediaKind::image, accessIDML());
    return t;
}
const MediaType& MediaType::typeIIQ() {
    static const MediaType t("IIQ", MediaKind::image, accessIIQ());
    return t;
}
const MediaType& MediaType::typeIND() {
    static const MediaType t("IND", MediaKind::image, accessIND());
    return t;
}
const MediaType& MediaType::typeINDD() {
    static const MediaType t("INDD", MediaKind::image, accessIND());
    return t;
}
const MediaType& MediaType::typeINDT() {
    static const MediaType t("INDT", MediaKind::image, accessIND());
    return t;
}
const MediaType& MediaType::typeINSP() {
    static const MediaType t("INSP", MediaKind::image, withJPEGSet(accessINSP()));
    return t;
}
const MediaType& MediaType::typeINSV() {
    static const MediaType t("INSV", MediaKind::movie, accessINSV());
    return t;
}
const MediaType& MediaType::typeINX() {
    static const MediaType t("INX", MediaKind::image, accessINX());
    return t;
}
const MediaType& MediaType::typeISO() {
    static const MediaType t("ISO", MediaKind::image, accessISO());
    return t;
}
const MediaType& MediaType::typeITC() {
    static const MediaType t("ITC", MediaKind::audio, accessITC());
    return t;
}
const MediaType& MediaType::typeJ2C() {
    static const MediaType t("J2C", MediaKind::image, accessJ2C());
    return t;
}
const MediaType& MediaType::typeJ2K() {
    static const MediaType t("J2K", MediaKind::image, accessJ2C());
    return t;
}
const MediaType& MediaType::typeJPC() {
    static const MediaType t("JPC", MediaKind::image, accessJ2C());
    return t;
}
const MediaType& MediaType::typeJP2() {
    static const MediaType t("JP2", MediaKind::image, accessJP2());
    return t;
}
const MediaType& MediaType::typeJPF() {
    static const MediaType t("JPF", MediaKind::image, accessJP2());
    return t;
}
const MediaType& MediaType::typeJPM() {
    static const MediaType t("JPM", MediaKind::image, accessJP2());
    return t;
}
const MediaType& MediaType::typeJPX() {
    static const MediaType t("JPX", MediaKind::image, accessJP2());
    return t;
}
const MediaType& MediaType::typeJPEG() {
    static const MediaType t("JPEG", MediaKind::image, withJPEGSet(accessINSP()));
    return t;
}
const MediaType& MediaType::typeJPG() {
    static const MediaType t("JPG", MediaKind::image, withJPEGSet(accessINSP()));
    return t;
}
const MediaType& MediaType::typeJPE() {
    static const MediaType t("JPE", MediaKind::image, withJPEGSet(accessINSP()));
    return t;
}
const MediaType& MediaType::typeJSON() {
    static const MediaType t("JSON", MediaKind::other, accessJSON());
    return t;
}
const MediaType& MediaType::typeJXL() {
    static const MediaType t("JXL", MediaKind::image, accessJXL());
    return t;
}
const MediaType& MediaType::typeJ25() {
    static const MediaType t("J25", MediaKind::image, access3FR());
    return t;
}
const MediaType& MediaType::typeKDC() {
    static const MediaType t("KDC", MediaKind::image, accessKDC());
    return t;
}
const MediaType& MediaType::typeKEY() {
    static const MediaType t("KEY", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typeKTH() {
    static const MediaType t("KTH", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typeLA() {
    static const MediaType t("LA", MediaKind::audio, accessLA());
    return t;
}
const MediaType& MediaType::typeLFP() {
    static const MediaType t("LFP", MediaKind::image, accessLFP());
    return t;
}
const MediaType& MediaType::typeLFR() {
    static const MediaType t("LFR", MediaKind::image, accessLFP());
    return t;
}
const MediaType& MediaType::typeLIF() {
    static const MediaType t("LIF", MediaKind::image, accessBMP());
    return t;
}
const MediaType& MediaType::typeLNK() {
    static const MediaType t("LNK", MediaKind::other, accessLNK());
    return t;
}
const MediaType& MediaType::typeLRV() {
    static const MediaType t("LRV", MediaKind::movie, access3G2());
    return t;
}
const MediaType& MediaType::typeM2TS() {
    static const MediaType t("M2TS", MediaKind::movie, accessM2TS());
    return t;
}
const MediaType& MediaType::typeMTS() {
    static const MediaType t("MTS", MediaKind::movie, accessM2TS());
    return t;
}
const MediaType& MediaType::typeM2T() {
    static const MediaType t("M2T", MediaKind::movie, accessM2TS());
    return t;
}
const MediaType& MediaType::typeTS() {
    static const MediaType t("TS", MediaKind::movie, accessM2TS());
    return t;
}
const MediaType& MediaType::typeM4A() {
    static const MediaType t("M4A", MediaKind::movie, access3G2());
    return t;
}
const MediaType& MediaType::typeM4B() {
    static const MediaType t("M4B", MediaKind::movie, access3G2());
    return t;
}
const MediaType& MediaType::typeM4P() {
    static const MediaType t("M4P", MediaKind::movie, access3G2());
    return t;
}
const MediaType& MediaType::typeM4V() {
    static const MediaType t("M4V", MediaKind::movie, access3G2());
    return t;
}
const MediaType& MediaType::typeMACOS() {
    static const MediaType t("MACOS", MediaKind::other, accessMACOS());
    return t;
}
const MediaType& MediaType::typeMAX() {
    static const MediaType t("MAX", MediaKind::movie, accessMAX());
    return t;
}
const MediaType& MediaType::typeMEF() {
    static const MediaType t("MEF", MediaKind::image, accessDCP());
    return t;
}
const MediaType& MediaType::typeMIE() {
    static const MediaType t("MIE", MediaKind::sidecar, accessMIE());
    return t;
}
const MediaType& MediaType::typeMIFF() {
    static const MediaType t("MIFF", MediaKind::image, accessMIFF());
    return t;
}
const MediaType& MediaType::typeMIF() {
    static const MediaType t("MIF", MediaKind::image, accessMIFF());
    return t;
}
const MediaType& MediaType::typeMKA() {
    static const MediaType t("MKA", MediaKind::movie, accessMKA());
    return t;
}
const MediaType& MediaType::typeMKV() {
    static const MediaType t("MKV", MediaKind::movie, accessMKA());
    return t;
}
const MediaType& MediaType::typeMKS() {
    static const MediaType t("MKS", MediaKind::movie, accessMKA());
    return t;
}
const MediaType& MediaType::typeMOBI() {
    static const MediaType t("MOBI", MediaKind::image, accessMOBI());
    return t;
}
const MediaType& MediaType::typeAZW() {
    static const MediaType t("AZW", MediaKind::image, accessMOBI());
    return t;
}
const MediaType& MediaType::typeAZW3() {
    static const MediaType t("AZW3", MediaKind::image, accessMOBI());
    return t;
}
const MediaType& MediaType::typeMODD() {
    static const MediaType t("MODD", MediaKind::image, accessMODD());
    return t;
}
const MediaType& MediaType::typeMOI() {
    static const MediaType t("MOI", MediaKind::other, accessMOI());
    return t;
}
const MediaType& MediaType::typeMOS() {
    static const MediaType t("MOS", MediaKind::image, accessMOS());
    return t;
}
const MediaType& MediaType::typeMOV() {
    static const MediaType t("MOV", MediaKind::movie, access3G2());
    return t;
}
const MediaType& MediaType::typeQT() {
    static const MediaType t("QT", MediaKind::movie, accessQT());
    return t;
}
const MediaType& MediaType::typeMP3() {
    static const MediaType t("MP3", MediaKind::audio, accessMP3());
    return t;
}
const MediaType& MediaType::typeMP4() {
    static const MediaType t("MP4", MediaKind::movie, access3G2());
    return t;
}
const MediaType& MediaType::typeMPC() {
    static const MediaType t("MPC", MediaKind::audio, accessMPC());
    return t;
}
const MediaType& MediaType::typeMPEG() {
    static const MediaType t("MPEG", MediaKind::movie, accessMPEG());
    return t;
}
const MediaType& MediaType::typeMPG() {
    static const MediaType t("MPG", MediaKind::movie, accessMPEG());
    return t;
}
const MediaType& MediaType::typeM2V() {
    static const MediaType t("M2V", MediaKind::movie, accessMPEG());
    return t;
}
const MediaType& MediaType::typeMPO() {
    static const MediaType t("MPO", MediaKind::image, withJPEGSet(accessINSP()));
    return t;
}
const MediaType& MediaType::typeMQV() {
    static const MediaType t("MQV", MediaKind::movie, access3G2());
    return t;
}
const MediaType& MediaType::typeMRW() {
    static const MediaType t("MRW", MediaKind::image, accessMRW());
    return t;
}
const MediaType& MediaType::typeMRC() {
    static const MediaType t("MRC", MediaKind::image, accessBMP());
    return t;
}
const MediaType& MediaType::typeMXF() {
    static const MediaType t("MXF", MediaKind::other, accessMXF());
    return t;
}
const MediaType& MediaType::typeNEF() {
    static const MediaType t("NEF", MediaKind::image, accessNEF());
    return t;
}
const MediaType& MediaType::typeNMTEMPLATE() {
    static const MediaType t("NMTEMPLATE", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typeNRW() {
    static const MediaType t("NRW", MediaKind::image, accessNEF());
    return t;
}
const MediaType& MediaType::typeNUMBERS() {
    static const MediaType t("NUMBERS", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typeO() {
    static const MediaType t("O", MediaKind::other, accessA());
    return t;
}
const MediaType& MediaType::typeODB() {
    static const MediaType t("ODB", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typeODC() {
    static const MediaType t("ODC", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typeODF() {
    static const MediaType t("ODF", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typeODG() {
    static const MediaType t("ODG", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typeODI() {
    static const MediaType t("ODI", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typeODP() {
    static const MediaType t("ODP", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typeODS() {
    static const MediaType t("ODS", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typeODT() {
    static const MediaType t("ODT", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typeOFR() {
    static const MediaType t("OFR", MediaKind::audio, accessLA());
    return t;
}
const MediaType& MediaType::typeOGG() {
    static const MediaType t("OGG", MediaKind::audio, accessOGG());
    return t;
}
const MediaType& MediaType::typeOGV() {
    static const MediaType t("OGV", MediaKind::audio, accessOGG());
    return t;
}
const MediaType& MediaType::typeONP() {
    static const MediaType t("ONP", MediaKind::audio, accessONP());
    return t;
}
const MediaType& MediaType::typeOPUS() {
    static const MediaType t("OPUS", MediaKind::audio, accessOPUS());
    return t;
}
const MediaType& MediaType::typeORF() {
    static const MediaType t("ORF", MediaKind::image, accessERF());
    return t;
}
const MediaType& MediaType::typeORI() {
    static const MediaType t("ORI", MediaKind::image, accessERF());
    return t;
}
const MediaType& MediaType::typeOTF() {
    static const MediaType t("OTF", MediaKind::other, accessAFM());
    return t;
}
const MediaType& MediaType::typePAC() {
    static const MediaType t("PAC", MediaKind::audio, accessLA());
    return t;
}
const MediaType& MediaType::typePAGES() {
    static const MediaType t("PAGES", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typePCD() {
    static const MediaType t("PCD", MediaKind::image, accessPCD());
    return t;
}
const MediaType& MediaType::typePCX() {
    static const MediaType t("PCX", MediaKind::image, accessBMP());
    return t;
}
const MediaType& MediaType::typePDB() {
    static const MediaType t("PDB", MediaKind::other, accessPDB());
    return t;
}
const MediaType& MediaType::typePRC() {
    static const MediaType t("PRC", MediaKind::other, accessPDB());
    return t;
}
const MediaType& MediaType::typePDF() {
    static const MediaType t("PDF", MediaKind::image, accessPDF());
    return t;
}
const MediaType& MediaType::typePEF() {
    static const MediaType t("PEF", MediaKind::image, accessPEF());
    return t;
}
const MediaType& MediaType::typePFA() {
    static const MediaType t("PFA", MediaKind::other, accessAFM());
    return t;
}
const MediaType& MediaType::typePFB() {
    static const MediaType t("PFB", MediaKind::other, accessAFM());
    return t;
}
const MediaType& MediaType::typePFM() {
    static const MediaType t("PFM", MediaKind::other, accessAFM());
    return t;
}
const MediaType& MediaType::typePGF() {
    static const MediaType t("PGF", MediaKind::image, accessPGF());
    return t;
}
const MediaType& MediaType::typePICT() {
    static const MediaType t("PICT", MediaKind::image, accessPICT());
    return t;
}
const MediaType& MediaType::typePCT() {
    static const MediaType t("PCT", MediaKind::image, accessPICT());
    return t;
}
const MediaType& MediaType::typePLIST() {
    static const MediaType t("PLIST", MediaKind::other, accessAAE());
    return t;
}
const MediaType& MediaType::typePMP() {
    static const MediaType t("PMP", MediaKind::image, accessPMP());
    return t;
}
const MediaType& MediaType::typePNG() {
    static const MediaType t("PNG", MediaKind::image, accessPNG());
    return t;
}
const MediaType& MediaType::typeJNG() {
    static const MediaType t("JNG", MediaKind::image, accessPNG());
    return t;
}
const MediaType& MediaType::typeMNG() {
    static const MediaType t("MNG", MediaKind::image, accessPNG());
    return t;
}
const MediaType& MediaType::typePPM() {
    static const MediaType t("PPM", MediaKind::image, accessBMP());
    return t;
}
const MediaType& MediaType::typePBM() {
    static const MediaType t("PBM", MediaKind::image, accessBMP());
    return t;
}
const MediaType& MediaType::typePGM() {
    static const MediaType t("PGM", MediaKind::image, accessBMP());
    return t;
}
const MediaType& MediaType::typePPT() {
    static const MediaType t("PPT", MediaKind::other, accessDOC());
    return t;
}
const MediaType& MediaType::typePPS() {
    static const MediaType t("PPS", MediaKind::other, accessDOC());
    return t;
}
const MediaType& MediaType::typePOT() {
    static const MediaType t("POT", MediaKind::other, accessDOC());
    return t;
}
const MediaType& MediaType::typePOTX() {
    static const MediaType t("POTX", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typePOTM() {
    static const MediaType t("POTM", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typePPAX() {
    static const MediaType t("PPAX", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typePPAM() {
    static const MediaType t("PPAM", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typePPSX() {
    static const MediaType t("PPSX", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typePPSM() {
    static const MediaType t("PPSM", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typePPTX() {
    static const MediaType t("PPTX", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typePPTM() {
    static const MediaType t("PPTM", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typePSD() {
    static const MediaType t("PSD", MediaKind::image, accessPSD());
    return t;
}
const MediaType& MediaType::typePSB() {
    static const MediaType t("PSB", MediaKind::image, accessPSD());
    return t;
}
const MediaType& MediaType::typePSDT() {
    static const MediaType t("PSDT", MediaKind::image, accessPSD());
    return t;
}
const MediaType& MediaType::typePSP() {
    static const MediaType t("PSP", MediaKind::image, accessPSP());
    return t;
}
const MediaType& MediaType::typePSPIMAGE() {
    static const MediaType t("PSPIMAGE", MediaKind::image, accessPSP());
    return t;
}
const MediaType& MediaType::typeQTIF() {
    static const MediaType t("QTIF", MediaKind::image, accessQTIF());
    return t;
}
const MediaType& MediaType::typeQTI() {
    static const MediaType t("QTI", MediaKind::image, accessQTIF());
    return t;
}
const MediaType& MediaType::typeQIF() {
    static const MediaType t("QIF", MediaKind::image, accessQTIF());
    return t;
}
const MediaType& MediaType::typeR3D() {
    static const MediaType t("R3D", MediaKind::movie, accessR3D());
    return t;
}
const MediaType& MediaType::typeRA() {
    static const MediaType t("RA", MediaKind::audio, accessRA());
    return t;
}
const MediaType& MediaType::typeRAF() {
    static const MediaType t("RAF", MediaKind::image, accessRAF());
    return t;
}
const MediaType& MediaType::typeRAM() {
    static const MediaType t("RAM", MediaKind::audio, accessRAM());
    return t;
}
const MediaType& MediaType::typeRPM() {
    static const MediaType t("RPM", MediaKind::audio, accessRAM());
    return t;
}
const MediaType& MediaType::typeRAR() {
    static const MediaType t("RAR", MediaKind::other, accessGZ());
    return t;
}
const MediaType& MediaType::typeRAW() {
    static const MediaType t("RAW", MediaKind::image, accessRAW());
    return t;
}
const MediaType& MediaType::typeRIFF() {
    static const MediaType t("RIFF", MediaKind::other, accessRIFF());
    return t;
}
const MediaType& MediaType::typeRIF() {
    static const MediaType t("RIF", MediaKind::other, accessRIFF());
    return t;
}
const MediaType& MediaType::typeRM() {
    static const MediaType t("RM", MediaKind::movie, accessRM());
    return t;
}
const MediaType& MediaType::typeRV() {
    static const MediaType t("RV", MediaKind::movie, accessRM());
    return t;
}
const MediaType& MediaType::typeRMVB() {
    static const MediaType t("RMVB", MediaKind::movie, accessRM());
    return t;
}
const MediaType& MediaType::typeRSRC() {
    static const MediaType t("RSRC", MediaKind::other, accessRSRC());
    return t;
}
const MediaType& MediaType::typeRTF() {
    static const MediaType t("RTF", MediaKind::other, accessRTF());
    return t;
}
const MediaType& MediaType::typeRW2() {
    static const MediaType t("RW2", MediaKind::image, accessRW2());
    return t;
}
const MediaType& MediaType::typeRWL() {
    static const MediaType t("RWL", MediaKind::image, accessRW2());
    return t;
}
const MediaType& MediaType::typeRWZ() {
    static const MediaType t("RWZ", MediaKind::image, accessRWZ());
    return t;
}
const MediaType& MediaType::typeSEQ() {
    static const MediaType t("SEQ", MediaKind::image, accessFPF());
    return t;
}
const MediaType& MediaType::typeSKETCH() {
    static const MediaType t("SKETCH", MediaKind::image, accessSKETCH());
    return t;
}
const MediaType& MediaType::typeSO() {
    static const MediaType t("SO", MediaKind::other, accessA());
    return t;
}
const MediaType& MediaType::typeSR2() {
    static const MediaType t("SR2", MediaKind::image, accessSR2());
    return t;
}
const MediaType& MediaType::typeSRF() {
    static const MediaType t("SRF", MediaKind::image, accessSRF());
    return t;
}
const MediaType& MediaType::typeSRW() {
    static const MediaType t("SRW", MediaKind::image, accessSRW());
    return t;
}
const MediaType& MediaType::typeSVG() {
    static const MediaType t("SVG", MediaKind::image, accessSVG());
    return t;
}
const MediaType& MediaType::typeSWF() {
    static const MediaType t("SWF", MediaKind::other, accessSWF());
    return t;
}
const MediaType& MediaType::typeTHM() {
    static const MediaType t("THM", MediaKind::image, withJPEGSet(accessINSP()));
    return t;
}
const MediaType& MediaType::typeTHMX() {
    static const MediaType t("THMX", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typeTIFF() {
    static const MediaType t("TIFF", MediaKind::image, accessTIFF());
    return t;
}
const MediaType& MediaType::typeTIF() {
    static const MediaType t("TIF", MediaKind::image, accessTIFF());
    return t;
}
const MediaType& MediaType::typeTTF() {
    static const MediaType t("TTF", MediaKind::other, accessAFM());
    return t;
}
const MediaType& MediaType::typeTTC() {
    static const MediaType t("TTC", MediaKind::other, accessAFM());
    return t;
}
const MediaType& MediaType::typeVCF() {
    static const MediaType t("VCF", MediaKind::other, accessVCF());
    return t;
}
const MediaType& MediaType::typeVCARD() {
    static const MediaType t("VCARD", MediaKind::other, accessVCF());
    return t;
}
const MediaType& MediaType::typeVOB() {
    static const MediaType t("VOB", MediaKind::movie, accessVOB());
    return t;
}
const MediaType& MediaType::typeVRD() {
    static const MediaType t("VRD", MediaKind::sidecar, accessVRD());
    return t;
}
const MediaType& MediaType::typeVSD() {
    static const MediaType t("VSD", MediaKind::image, accessFPX());
    return t;
}
const MediaType& MediaType::typeWAV() {
    static const MediaType t("WAV", MediaKind::audio, accessLA());
    return t;
}
const MediaType& MediaType::typeWEBM() {
    static const MediaType t("WEBM", MediaKind::movie, accessMKA());
    return t;
}
const MediaType& MediaType::typeWEBP() {
    static const MediaType t("WEBP", MediaKind::image, accessWEBP());
    return t;
}
const MediaType& MediaType::typeWMA() {
    static const MediaType t("WMA", MediaKind::audio, accessWMA());
    return t;
}
const MediaType& MediaType::typeWMV() {
    static const MediaType t("WMV", MediaKind::movie, accessDVIX());
    return t;
}
const MediaType& MediaType::typeWTV() {
    static const MediaType t("WTV", MediaKind::movie, accessWTV());
    return t;
}
const MediaType& MediaType::typeWV() {
    static const MediaType t("WV", MediaKind::movie, accessWV());
    return t;
}
const MediaType& MediaType::typeX3F() {
    static const MediaType t("X3F", MediaKind::image, accessX3F());
    return t;
}
const MediaType& MediaType::typeXCF() {
    static const MediaType t("XCF", MediaKind::image, accessXCF());
    return t;
}
const MediaType& MediaType::typeXLS() {
    static const MediaType t("XLS", MediaKind::other, accessDOC());
    return t;
}
const MediaType& MediaType::typeXLT() {
    static const MediaType t("XLT", MediaKind::other, accessDOC());
    return t;
}
const MediaType& MediaType::typeXLSX() {
    static const MediaType t("XLSX", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typeXLSM() {
    static const MediaType t("XLSM", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typeXLSB() {
    static const MediaType t("XLSB", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typeXLTX() {
    static const MediaType t("XLTX", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typeXLTM() {
    static const MediaType t("XLTM", MediaKind::other, accessDOCX());
    return t;
}
const MediaType& MediaType::typeXMP() {
    static const MediaType t("XMP", MediaKind::sidecar, accessXMP());
    return t;
}
const MediaType& MediaType::typeZIP() {
    static const MediaType t("ZIP", MediaKind::image, accessZIP());
    return t;
}

const std::vector<MediaType>& MediaType::allCases() {
    static const std::vector<MediaType> all{
        typeFolder(),   type360(),     type3FR(),   type3G2(),  type3GP2(),  type3GP(),   type3GPP(),
        typeA(),        typeAA(),      typeAAE(),   typeAAX(),  typeACR(),   typeAFM(),   typeACFM(),
        typeAMFM(),     typeAI(),      typeAIT(),   typeAIFF(), typeAIF(),   typeAIFC(),  typeAPE(),
        typeARQ(),      typeARW(),     typeASF(),   typeAVI(),  typeAVIF(),  typeBMP(),   typeDIB(),
        typeBPG(),      typeBTF(),     typeCHM(),   typeCOS(),  typeCR2(),   typeCR3(),   typeCRM(),
        typeCRW(),      typeCIFF(),    typeCS1(),   typeCSV(),  typeCZI(),   typeDCM(),   typeDC3(),
        typeDIC(),      typeDICM(),    typeDCP(),   typeDCR(),  typeDFONT(), typeDVIX(),  typeDJVU(),
        typeDJV(),      typeDNG(),     typeDOC(),   typeDOT(),  typeDOCX(),  typeDOCM(),  typeDOTM(),
        typeDPX(),      typeDR4(),     typeDSS(),   typeDS2(),  typeDYLIB(), typeDV(),    typeDVB(),
        typeDVR_MS(),   typeEIP(),     typeEPS(),   typeEPSF(), typePS(),    typeEPUB(),  typeERF(),
        typeEXE(),      typeDLL(),     typeEXIF(),  typeEXR(),  typeEXV(),   typeF4A(),   typeF4B(),
        typeF4P(),      typeF4V(),     typeFFF(),   typeFITS(), typeFLA(),   typeFLAC(),  typeFLIF(),
        typeFLV(),      typeFPF(),     typeFPX(),   typeGIF(),  typeGPR(),   typeGZ(),    typeGZIP(),
        typeHDP(),      typeWDP(),     typeJXR(),   typeHDR(),  typeHEIC(),  typeHEIF(),  typeHIF(),
        typeHTML(),     typeHTM(),     typeXHTML(), typeICC(),  typeICM(),   typeICS(),   typeICAL(),
        typeIDML(),     typeIIQ(),     typeIND(),   typeINDD(), typeINDT(),  typeINSP(),  typeINSV(),
        typeINX(),      typeISO(),     typeITC(),   typeJ2C(),  typeJ2K(),   typeJPC(),   typeJP2(),
        typeJPF(),      typeJPM(),     typeJPX(),   typeJPEG(), typeJPG(),   typeJPE(),   typeJSON(),
        typeJXL(),      typeJ25(),     typeKDC(),   typeKEY(),  typeKTH(),   typeLA(),    typeLFP(),
        typeLFR(),      typeLIF(),     typeLNK(),   typeLRV(),  typeM2TS(),  typeMTS(),   typeM2T(),
        typeTS(),       typeM4A(),     typeM4B(),   typeM4P(),  typeM4V(),   typeMACOS(), typeMAX(),
        typeMEF(),      typeMIE(),     typeMIFF(),  typeMIF(),  typeMKA(),   typeMKV(),   typeMKS(),
        typeMOBI(),     typeAZW(),     typeAZW3(),  typeMODD(), typeMOI(),   typeMOS(),   typeMOV(),
        typeQT(),       typeMP3(),     typeMP4(),   typeMPC(),  typeMPEG(),  typeMPG(),   typeM2V(),
        typeMPO(),      typeMQV(),     typeMRW(),   typeMRC(),  typeMXF(),   typeNEF(),   typeNMTEMPLATE(),
        typeNRW(),      typeNUMBERS(), typeO(),     typeODB(),  typeODC(),   typeODF(),   typeODG(),
        typeODI(),      typeODP(),     typeODS(),   typeODT(),  typeOFR(),   typeOGG(),   typeOGV(),
        typeONP(),      typeOPUS(),    typeORF(),   typeORI(),  typeOTF(),   typePAC(),   typePAGES(),
        typePCD(),      typePCX(),     typePDB(),   typePRC(),  typePDF(),   typePEF(),   typePFA(),
        typePFB(),      typePFM(),     typePGF(),   typePICT(), typePCT(),   typePLIST(), typePMP(),
        typePNG(),      typeJNG(),     typeMNG(),   typePPM(),  typePBM(),   typePGM(),   typePPT(),
        typePPS(),      typePOT(),     typePOTX(),  typePOTM(), typePPAX(),  typePPAM(),  typePPSX(),
        typePPSM(),     typePPTX(),    typePPTM(),  typePSD(),  typePSB(),   typePSDT(),  typePSP(),
        typePSPIMAGE(), typeQTIF(),    typeQTI(),   typeQIF(),  typeR3D(),   typeRA(),    typeRAF(),
        typeRAM(),      typeRPM(),     typeRAR(),   typeRAW(),  typeRIFF(),  typeRIF(),   typeRM(),
        typeRV(),       typeRMVB(),    typeRSRC(),  typeRTF(),  typeRW2(),   typeRWL(),   typeRWZ(),
        typeSEQ(),      typeSKETCH(),  typeSO(),    typeSR2(),  typeSRF(),   typeSRW(),   typeSVG(),
        typeSWF(),      typeTHM(),     typeTHMX(),  typeTIFF(), typeTIF(),   typeTTF(),   typeTTC(),
        typeVCF(),      typeVCARD(),   typeVOB(),   typeVRD(),  typeVSD(),   typeWAV(),   typeWEBM(),
        typeWEBP(),     typeWMA(),     typeWMV(),   typeWTV(),  typeWV(),    typeX3F(),   typeXCF(),
        typeXLS(),      typeXLT(),     typeXLSX(),  typeXLSM(), typeXLSB(),  typeXLTX(),  typeXLTM(),
        typeXMP(),      typeZIP()};
    return all;
}

} // namespace corvane
