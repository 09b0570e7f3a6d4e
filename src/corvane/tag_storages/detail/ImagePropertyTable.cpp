#include "corvane/tag_storages/detail/ImagePropertyTable.hpp"

#include <string>
#include <unordered_map>

namespace corvane::detail {

namespace {

// exiv2 key, image I/O dictionary, image I/O property, shape. Properties of the image I/O
// vocabulary that exiv2 doesn't read (the JFIF, GIF, PNG and CIFF dictionaries, the IPTC
// extension's structures) have no row: they are never found, as with a platform that lacks them.
constexpr ImagePropertyRow rows[] = {
    // {TIFF}
    {"Exif.Image.Compression", "{TIFF}", "Compression"},
    {"Exif.Image.PhotometricInterpretation", "{TIFF}", "PhotometricInterpretation"},
    {"Exif.Image.DocumentName", "{TIFF}", "DocumentName"},
    {"Exif.Image.ImageDescription", "{TIFF}", "ImageDescription"},
    {"Exif.Image.Make", "{TIFF}", "Make", PropertyShape::paddedText},
    {"Exif.Image.Model", "{TIFF}", "Model", PropertyShape::paddedText},
    {"Exif.Image.Orientation", "{TIFF}", "Orientation"},
    {"Exif.Image.XResolution", "{TIFF}", "XResolution"},
    {"Exif.Image.YResolution", "{TIFF}", "YResolution"},
    {"Exif.Image.ResolutionUnit", "{TIFF}", "ResolutionUnit"},
    {"Exif.Image.Software", "{TIFF}", "Software", PropertyShape::paddedText},
    {"Exif.Image.TransferFunction", "{TIFF}", "TransferFunction"},
    {"Exif.Image.DateTime", "{TIFF}", "DateTime", PropertyShape::exifDate},
    {"Exif.Image.Artist", "{TIFF}", "Artist", PropertyShape::paddedText},
    {"Exif.Image.HostComputer", "{TIFF}", "HostComputer"},
    {"Exif.Image.Copyright", "{TIFF}", "Copyright", PropertyShape::copyright},
    {"Exif.Image.WhitePoint", "{TIFF}", "WhitePoint"},
    {"Exif.Image.PrimaryChromaticities", "{TIFF}", "PrimaryChromaticities"},
    {"Exif.Image.TileWidth", "{TIFF}", "TileWidth"},
    {"Exif.Image.TileLength", "{TIFF}", "TileLength"},
    // {Exif}
    {"Exif.Photo.ExposureTime", "{Exif}", "ExposureTime"},
    {"Exif.Photo.FNumber", "{Exif}", "FNumber"},
    {"Exif.Photo.ExposureProgram", "{Exif}", "ExposureProgram"},
    {"Exif.Photo.SpectralSensitivity", "{Exif}", "SpectralSensitivity"},
    {"Exif.Photo.ISOSpeedRatings", "{Exif}", "ISOSpeedRatings", PropertyShape::numberArray},
    {"Exif.Photo.OECF", "{Exif}", "OECF"},
    {"Exif.Photo.SensitivityType", "{Exif}", "SensitivityType"},
    {"Exif.Photo.StandardOutputSensitivity", "{Exif}", "StandardOutputSensitivity"},
    {"Exif.Photo.RecommendedExposureIndex", "{Exif}", "RecommendedExposureIndex"},
    {"Exif.Photo.ISOSpeed", "{Exif}", "ISOSpeed"},
    {"Exif.Photo.ISOSpeedLatitudeyyy", "{Exif}", "ISOSpeedLatitudeyyy"},
    {"Exif.Photo.ISOSpeedLatitudezzz", "{Exif}", "ISOSpeedLatitudezzz"},
    {"Exif.Photo.ExifVersion", "{Exif}", "ExifVersion", PropertyShape::byteText},
    {"Exif.Photo.DateTimeOriginal", "{Exif}", "DateTimeOriginal", PropertyShape::exifDate},
    {"Exif.Photo.DateTimeDigitized", "{Exif}", "DateTimeDigitized", PropertyShape::exifDate},
    {"Exif.Photo.ComponentsConfiguration", "{Exif}", "ComponentsConfiguration"},
    {"Exif.Photo.CompressedBitsPerPixel", "{Exif}", "CompressedBitsPerPixel"},
    {"Exif.Photo.ShutterSpeedValue", "{Exif}", "ShutterSpeedValue", PropertyShape::apexShutterSpeed},
    {"Exif.Photo.ApertureValue", "{Exif}", "ApertureValue", PropertyShape::apexAperture},
    {"Exif.Photo.BrightnessValue", "{Exif}", "BrightnessValue"},
    {"Exif.Photo.ExposureBiasValue", "{Exif}", "ExposureBiasValue"},
    {"Exif.Photo.MaxApertureValue", "{Exif}", "MaxApertureValue", PropertyShape::apexAperture},
    {"Exif.Photo.SubjectDistance", "{Exif}", "SubjectDistance"},
    {"Exif.Photo.MeteringMode", "{Exif}", "MeteringMode"},
    {"Exif.Photo.LightSource", "{Exif}", "LightSource"},
    {"Exif.Photo.Flash", "{Exif}", "Flash"},
    {"Exif.Photo.FocalLength", "{Exif}", "FocalLength"},
    {"Exif.Photo.SubjectArea", "{Exif}", "SubjectArea"},
    {"Exif.Photo.MakerNote", "{Exif}", "MakerNote"},
    {"Exif.Photo.UserComment", "{Exif}", "UserComment", PropertyShape::comment},
    {"Exif.Photo.SubSecTime", "{Exif}", "SubsecTime"},
    {"Exif.Photo.SubSecTimeOriginal", "{Exif}", "SubsecTimeOriginal"},
    {"Exif.Photo.SubSecTimeDigitized", "{Exif}", "SubsecTimeDigitized"},
    {"Exif.Photo.FlashpixVersion", "{Exif}", "FlashPixVersion", PropertyShape::byteText},
    {"Exif.Photo.ColorSpace", "{Exif}", "ColorSpace"},
    {"Exif.Photo.PixelXDimension", "{Exif}", "PixelXDimension"},
    {"Exif.Photo.PixelYDimension", "{Exif}", "PixelYDimension"},
    {"Exif.Photo.RelatedSoundFile", "{Exif}", "RelatedSoundFile"},
    {"Exif.Photo.FlashEnergy", "{Exif}", "FlashEnergy"},
    {"Exif.Photo.SpatialFrequencyResponse", "{Exif}", "SpatialFrequencyResponse"},
    {"Exif.Photo.FocalPlaneXResolution", "{Exif}", "FocalPlaneXResolution"},
    {"Exif.Photo.FocalPlaneYResolution", "{Exif}", "FocalPlaneYResolution"},
    {"Exif.Photo.FocalPlaneResolutionUnit", "{Exif}", "FocalPlaneResolutionUnit"},
    {"Exif.Photo.SubjectLocation", "{Exif}", "SubjectLocation"},
    {"Exif.Photo.ExposureIndex", "{Exif}", "ExposureIndex"},
    {"Exif.Photo.SensingMethod", "{Exif}", "SensingMethod"},
    {"Exif.Photo.FileSource", "{Exif}", "FileSource"},
    {"Exif.Photo.SceneType", "{Exif}", "SceneType"},
    {"Exif.Photo.CFAPattern", "{Exif}", "CFAPattern"},
    {"Exif.Photo.CustomRendered", "{Exif}", "CustomRendered"},
    {"Exif.Photo.ExposureMode", "{Exif}", "ExposureMode"},
    {"Exif.Photo.WhiteBalance", "{Exif}", "WhiteBalance"},
    {"Exif.Photo.DigitalZoomRatio", "{Exif}", "DigitalZoomRatio"},
    {"Exif.Photo.FocalLengthIn35mmFilm", "{Exif}", "FocalLenIn35mmFilm"},
    {"Exif.Photo.SceneCaptureType", "{Exif}", "SceneCaptureType"},
    {"Exif.Photo.GainControl", "{Exif}", "GainControl"},
    {"Exif.Photo.Contrast", "{Exif}", "Contrast"},
    {"Exif.Photo.Saturation", "{Exif}", "Saturation"},
    {"Exif.Photo.Sharpness", "{Exif}", "Sharpness"},
    {"Exif.Photo.DeviceSettingDescription", "{Exif}", "DeviceSettingDescription"},
    {"Exif.Photo.SubjectDistanceRange", "{Exif}", "SubjectDistRange"},
    {"Exif.Photo.ImageUniqueID", "{Exif}", "ImageUniqueID"},
    {"Exif.Photo.CameraOwnerName", "{Exif}", "CameraOwnerName"},
    {"Exif.Photo.BodySerialNumber", "{Exif}", "BodySerialNumber"},
    {"Exif.Photo.LensSpecification", "{Exif}", "LensSpecification", PropertyShape::numberArray},
    {"Exif.Photo.LensMake", "{Exif}", "LensMake"},
    {"Exif.Photo.LensModel", "{Exif}", "LensModel"},
    {"Exif.Photo.LensSerialNumber", "{Exif}", "LensSerialNumber"},
    {"Exif.Photo.Gamma", "{Exif}", "Gamma"},
    // {ExifAux}
    {"Xmp.aux.LensInfo", "{ExifAux}", "LensInfo", PropertyShape::xmpRationals},
    {"Xmp.aux.Lens", "{ExifAux}", "LensModel"},
    {"Xmp.aux.SerialNumber", "{ExifAux}", "SerialNumber"},
    {"Xmp.aux.LensID", "{ExifAux}", "LensID"},
    {"Xmp.aux.LensSerialNumber", "{ExifAux}", "LensSerialNumber"},
    {"Xmp.aux.ImageNumber", "{ExifAux}", "ImageNumber"},
    {"Xmp.aux.FlashCompensation", "{ExifAux}", "FlashCompensation"},
    {"Xmp.aux.OwnerName", "{ExifAux}", "OwnerName"},
    {"Xmp.aux.Firmware", "{ExifAux}", "Firmware"},
    // {GPS}
    {"Exif.GPSInfo.GPSVersionID", "{GPS}", "GPSVersion"},
    {"Exif.GPSInfo.GPSLatitudeRef", "{GPS}", "LatitudeRef"},
    {"Exif.GPSInfo.GPSLatitude", "{GPS}", "Latitude", PropertyShape::gpsCoordinate},
    {"Exif.GPSInfo.GPSLongitudeRef", "{GPS}", "LongitudeRef"},
    {"Exif.GPSInfo.GPSLongitude", "{GPS}", "Longitude", PropertyShape::gpsCoordinate},
    {"Exif.GPSInfo.GPSAltitudeRef", "{GPS}", "AltitudeRef"},
    {"Exif.GPSInfo.GPSAltitude", "{GPS}", "Altitude"},
    {"Exif.GPSInfo.GPSTimeStamp", "{GPS}", "TimeStamp", PropertyShape::gpsTime},
    {"Exif.GPSInfo.GPSSatellites", "{GPS}", "Satellites"},
    {"Exif.GPSInfo.GPSStatus", "{GPS}", "Status"},
    {"Exif.GPSInfo.GPSMeasureMode", "{GPS}", "MeasureMode"},
    {"Exif.GPSInfo.GPSDOP", "{GPS}", "DOP"},
    {"Exif.GPSInfo.GPSSpeedRef", "{GPS}", "SpeedRef"},
    {"Exif.GPSInfo.GPSSpeed", "{GPS}", "Speed"},
    {"Exif.GPSInfo.GPSTrackRef", "{GPS}", "TrackRef"},
    {"Exif.GPSInfo.GPSTrack", "{GPS}", "Track"},
    {"Exif.GPSInfo.GPSImgDirectionRef", "{GPS}", "ImgDirectionRef"},
    {"Exif.GPSInfo.GPSImgDirection", "{GPS}", "ImgDirection"},
    {"Exif.GPSInfo.GPSMapDatum", "{GPS}", "MapDatum"},
    {"Exif.GPSInfo.GPSDestLatitudeRef", "{GPS}", "DestLatitudeRef"},
    {"Exif.GPSInfo.GPSDestLatitude", "{GPS}", "DestLatitude", PropertyShape::gpsCoordinate},
    {"Exif.GPSInfo.GPSDestLongitudeRef", "{GPS}", "DestLongitudeRef"},
    {"Exif.GPSInfo.GPSDestLongitude", "{GPS}", "DestLongitude", PropertyShape::gpsCoordinate},
    {"Exif.GPSInfo.GPSDestBearingRef", "{GPS}", "DestBearingRef"},
    {"Exif.GPSInfo.GPSDestBearing", "{GPS}", "DestBearing"},
    {"Exif.GPSInfo.GPSDestDistanceRef", "{GPS}", "DestDistanceRef"},
    {"Exif.GPSInfo.GPSDestDistance", "{GPS}", "DestDistance"},
    {"Exif.GPSInfo.GPSProcessingMethod", "{GPS}", "ProcessingMethod", PropertyShape::comment},
    {"Exif.GPSInfo.GPSAreaInformation", "{GPS}", "AreaInformation", PropertyShape::comment},
    {"Exif.GPSInfo.GPSDateStamp", "{GPS}", "DateStamp", PropertyShape::exifDay},
    {"Exif.GPSInfo.GPSDifferential", "{GPS}", "Differential"},
    {"Exif.GPSInfo.GPSHPositioningError", "{GPS}", "HPositioningError"},
    // {IPTC}
    {"Iptc.Application2.ObjectType", "{IPTC}", "ObjectTypeReference"},
    {"Iptc.Application2.ObjectAttribute", "{IPTC}", "ObjectAttributeReference"},
    {"Iptc.Application2.ObjectName", "{IPTC}", "ObjectName"},
    {"Iptc.Application2.EditStatus", "{IPTC}", "EditStatus"},
    {"Iptc.Application2.EditorialUpdate", "{IPTC}", "EditorialUpdate"},
    {"Iptc.Application2.Urgency", "{IPTC}", "Urgency"},
    {"Iptc.Application2.Subject", "{IPTC}", "SubjectReference"},
    {"Iptc.Application2.Category", "{IPTC}", "Category"},
    {"Iptc.Application2.SuppCategory", "{IPTC}", "SupplementalCategory"},
    {"Iptc.Application2.FixtureId", "{IPTC}", "FixtureIdentifier"},
    {"Iptc.Application2.Keywords", "{IPTC}", "Keywords"},
    {"Iptc.Application2.LocationCode", "{IPTC}", "ContentLocationCode"},
    {"Iptc.Application2.LocationName", "{IPTC}", "ContentLocationName"},
    {"Iptc.Application2.ReleaseDate", "{IPTC}", "ReleaseDate", PropertyShape::iptcDate},
    {"Iptc.Application2.ReleaseTime", "{IPTC}", "ReleaseTime", PropertyShape::iptcTime},
    {"Iptc.Application2.ExpirationDate", "{IPTC}", "ExpirationDate", PropertyShape::iptcDate},
    {"Iptc.Application2.ExpirationTime", "{IPTC}", "ExpirationTime", PropertyShape::iptcTime},
    {"Iptc.Application2.SpecialInstructions", "{IPTC}", "SpecialInstructions"},
    {"Iptc.Application2.ActionAdvised", "{IPTC}", "ActionAdvised"},
    {"Iptc.Application2.ReferenceService", "{IPTC}", "ReferenceService"},
    {"Iptc.Application2.ReferenceDate", "{IPTC}", "ReferenceDate", PropertyShape::iptcDate},
    {"Iptc.Application2.ReferenceNumber", "{IPTC}", "ReferenceNumber"},
    {"Iptc.Application2.DateCreated", "{IPTC}", "DateCreated", PropertyShape::iptcDate},
    {"Iptc.Application2.TimeCreated", "{IPTC}", "TimeCreated", PropertyShape::iptcTime},
    {"Iptc.Application2.DigitizationDate", "{IPTC}", "DigitalCreationDate", PropertyShape::iptcDate},
    {"Iptc.Application2.DigitizationTime", "{IPTC}", "DigitalCreationTime", PropertyShape::iptcTime},
    {"Iptc.Application2.Program", "{IPTC}", "OriginatingProgram"},
    {"Iptc.Application2.ProgramVersion", "{IPTC}", "ProgramVersion"},
    {"Iptc.Application2.ObjectCycle", "{IPTC}", "ObjectCycle"},
    {"Iptc.Application2.Byline", "{IPTC}", "Byline"},
    {"Iptc.Application2.BylineTitle", "{IPTC}", "BylineTitle"},
    {"Iptc.Application2.City", "{IPTC}", "City"},
    {"Iptc.Application2.SubLocation", "{IPTC}", "SubLocation"},
    {"Iptc.Application2.ProvinceState", "{IPTC}", "Province/State"},
    {"Iptc.Application2.CountryCode", "{IPTC}", "Country/PrimaryLocationCode"},
    {"Iptc.Application2.CountryName", "{IPTC}", "Country/PrimaryLocationName"},
    {"Iptc.Application2.TransmissionReference", "{IPTC}", "OriginalTransmissionReference"},
    {"Iptc.Application2.Headline", "{IPTC}", "Headline"},
    {"Iptc.Application2.Credit", "{IPTC}", "Credit"},
    {"Iptc.Application2.Source", "{IPTC}", "Source"},
    {"Iptc.Application2.Copyright", "{IPTC}", "CopyrightNotice"},
    {"Iptc.Application2.Contact", "{IPTC}", "Contact"},
    {"Iptc.Application2.Caption", "{IPTC}", "Caption/Abstract"},
    {"Iptc.Application2.Writer", "{IPTC}", "Writer/Editor"},
    {"Iptc.Application2.ImageType", "{IPTC}", "ImageType"},
    {"Iptc.Application2.ImageOrientation", "{IPTC}", "ImageOrientation"},
    {"Iptc.Application2.Language", "{IPTC}", "LanguageIdentifier"},
    {"Xmp.xmp.Rating", "{IPTC}", "StarRating"},
    {"Xmp.iptc.CreatorContactInfo/Iptc4xmpCore:CiAdrCity", "{IPTC}", "CiAdrCity"},
    {"Xmp.xmpRights.UsageTerms", "{IPTC}", "UsageTerms"},
    {"Xmp.iptc.Scene", "{IPTC}", "Scene"},
    {"Xmp.iptcExt.AddlModelInfo", "{IPTC}", "AddlModelInfo"},
    {"Xmp.dc.creator", "{IPTC}", "Creator"},
    {"Xmp.iptcExt.DigImageGUID", "{IPTC}", "DigitalImageGUID"},
    {"Xmp.iptcExt.DigitalSourcefileType", "{IPTC}", "DigitalSourceFileType"},
    {"Xmp.iptcExt.DigitalSourceType", "{IPTC}", "DigitalSourceType"},
    {"Xmp.iptcExt.Event", "{IPTC}", "Event"},
    {"Xmp.iptcExt.IptcLastEdited", "{IPTC}", "IPTCLastEdited"},
    {"Xmp.iptcExt.MaxAvailHeight", "{IPTC}", "MaxAvailHeight"},
    {"Xmp.iptcExt.MaxAvailWidth", "{IPTC}", "MaxAvailWidth"},
    {"Xmp.iptcExt.ModelAge", "{IPTC}", "ModelAge"},
    {"Xmp.iptcExt.OrganisationInImageCode", "{IPTC}", "OrganisationInImageCode"},
    {"Xmp.iptcExt.OrganisationInImageName", "{IPTC}", "OrganisationInImageName"},
    {"Xmp.iptcExt.PersonInImage", "{IPTC}", "PersonInImage"},
    // {DNG}
    {"Exif.Image.DNGVersion", "{DNG}", "DNGVersion"},
    {"Exif.Image.DNGBackwardVersion", "{DNG}", "DNGBackwardVersion"},
    {"Exif.Image.UniqueCameraModel", "{DNG}", "UniqueCameraModel"},
    {"Exif.Image.LocalizedCameraModel", "{DNG}", "LocalizedCameraModel"},
    {"Exif.Image.CameraSerialNumber", "{DNG}", "CameraSerialNumber"},
    {"Exif.Image.LensInfo", "{DNG}", "LensInfo"},
    {"Exif.Image.BlackLevel", "{DNG}", "BlackLevel"},
    {"Exif.Image.WhiteLevel", "{DNG}", "WhiteLevel"},
    {"Exif.Image.CalibrationIlluminant1", "{DNG}", "CalibrationIlluminant1"},
    {"Exif.Image.CalibrationIlluminant2", "{DNG}", "CalibrationIlluminant2"},
    {"Exif.Image.ColorMatrix1", "{DNG}", "ColorMatrix1"},
    {"Exif.Image.ColorMatrix2", "{DNG}", "ColorMatrix2"},
    {"Exif.Image.CameraCalibration1", "{DNG}", "CameraCalibration1:"},
    {"Exif.Image.CameraCalibration2", "{DNG}", "CameraCalibration2"},
    {"Exif.Image.AsShotNeutral", "{DNG}", "AsShotNeutral"},
    {"Exif.Image.AsShotWhiteXY", "{DNG}", "AsShotWhiteXY"},
    {"Exif.Image.BaselineExposure", "{DNG}", "BaselineExposure"},
    {"Exif.Image.BaselineNoise", "{DNG}", "BaselineNoise"},
    {"Exif.Image.BaselineSharpness", "{DNG}", "BaselineSharpness"},
    {"Exif.Image.DNGPrivateData", "{DNG}", "DNGPrivateData"},
    {"Exif.Image.CameraCalibrationSignature", "{DNG}", "CameraCalibrationSignature"},
    {"Exif.Image.ProfileCalibrationSignature", "{DNG}", "ProfileCalibrationSignature"},
    {"Exif.Image.NoiseProfile", "{DNG}", "NoiseProfile"},
    // {MakerNikon}
    {"Exif.Nikon3.ISOSettings", "{MakerNikon}", "ISOSetting"},
    {"Exif.Nikon3.ColorMode", "{MakerNikon}", "ColorMode"},
    {"Exif.Nikon3.Quality", "{MakerNikon}", "Quality"},
    {"Exif.Nikon3.WhiteBalance", "{MakerNikon}", "WhiteBalanceMode"},
    {"Exif.Nikon3.Sharpening", "{MakerNikon}", "SharpenMode"},
    {"Exif.Nikon3.Focus", "{MakerNikon}", "FocusMode"},
    {"Exif.Nikon3.FlashSetting", "{MakerNikon}", "FlashSetting"},
    {"Exif.Nikon3.ISOSelection", "{MakerNikon}", "ISOSelection"},
    {"Exif.Nikon3.ImageAdjustment", "{MakerNikon}", "ImageAdjustment"},
    {"Exif.Nikon3.LensType", "{MakerNikon}", "LensType"},
    {"Exif.Nikon3.Lens", "{MakerNikon}", "LensInfo"},
    {"Exif.Nikon3.FocusDistance", "{MakerNikon}", "FocusDistance"},
    {"Exif.Nikon3.DigitalZoom", "{MakerNikon}", "DigitalZoom"},
    {"Exif.Nikon3.ShootingMode", "{MakerNikon}", "ShootingMode"},
    {"Exif.Nikon3.SerialNumber", "{MakerNikon}", "CameraSerialNumber"},
    {"Exif.Nikon3.ShutterCount", "{MakerNikon}", "ShutterCount"},
    // {MakerCanon}
    {"Exif.Canon.OwnerName", "{MakerCanon}", "OwnerName:string"},
    {"Exif.Canon.SerialNumber", "{MakerCanon}", "CameraSerialNumber"},
    {"Exif.Canon.FileNumber", "{MakerCanon}", "ImageSerialNumber"},
    {"Exif.CanonCs.DriveMode", "{MakerCanon}", "ContinuousDrive"},
    {"Exif.Canon.LensModel", "{MakerCanon}", "LensModel"},
};

constexpr std::string_view dictionaries[] = {"{TIFF}", "{Exif}", "{ExifAux}",    "{GPS}",
                                             "{IPTC}", "{DNG}",  "{MakerNikon}", "{MakerCanon}"};

// Both look-ups, built once over the rows.
struct Indexes {
    std::unordered_map<std::string_view, const ImagePropertyRow*> byExiv2Key;
    std::unordered_map<std::string, const ImagePropertyRow*> byProperty;

    Indexes() {
        for (const auto& row : rows) {
            byExiv2Key.emplace(row.exiv2Key, &row);
            byProperty.emplace(propertyKey(row.dictionary, row.property), &row);
        }
    }

    static std::string propertyKey(std::string_view dictionary, std::string_view property) {
        std::string key(dictionary);
        key += '\n';
        key += property;
        return key;
    }

    static const Indexes& shared() {
        static const Indexes indexes;
        return indexes;
    }
};

} // namespace

const ImagePropertyRow* findImageProperty(std::string_view exiv2Key) {
    const auto& index = Indexes::shared().byExiv2Key;
    auto it = index.find(exiv2Key);
    return it == index.end() ? nullptr : it->second;
}

const ImagePropertyRow* findImageProperty(std::string_view dictionary, std::string_view property) {
    const auto& index = Indexes::shared().byProperty;
    auto it = index.find(Indexes::propertyKey(dictionary, property));
    return it == index.end() ? nullptr : it->second;
}

std::span<const ImagePropertyRow> imagePropertyTable() {
    return rows;
}

std::span<const std::string_view> imagePropertyDictionaries() {
    return dictionaries;
}

} // namespace corvane::detail
