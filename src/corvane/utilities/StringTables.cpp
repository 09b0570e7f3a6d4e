#include "corvane/utilities/StringTables.hpp"

#include <unicode/ures.h>

#include <algorithm>
#include <map>
#include <memory>
#include <ostream>
#include <vector>

namespace corvane {

namespace {

struct RawEntry {
    const char* table;
    const char* key;
    const char* text;
};

// English texts of the default table and the section titles.
constexpr RawEntry englishEntries[] = {
    {"Localizable", "TaskStatusPending", "Pending"},
    {"Localizable", "TaskStatusProcessing", "Processing"},
    {"Localizable", "TaskStatusCompleted", "Completed"},
    {"Localizable", "TaskStatusCancelled", "Cancelled"},
    {"Localizable", "UntitledEditionTask", "Untitled Edition"},
    {"Localizable", "ImportTagEditorsTaskTitle", "Opening Files"},
    {"Localizable", "SaveTagEditorsTaskTitle", "Saving Files"},
    {"Localizable", "ImportTagValuesTaskTitle", "Importing Tag Values"},
    {"Localizable", "ExportTagValuesTaskTitle", "Exporting Tag Values"},
    {"Localizable", "SyncTagValuesTaskTitle", "Synchronizing Tag Values"},
    {"Localizable", "SyncSidecarFilesTaskTitle", "Synchronizing Sidecar Files"},
    {"Localizable", "CleanTagValuesTaskTitle", "Cleaning Tag Values"},
    {"Localizable", "DeleteItunMoviTaskTitle", "Removing iTunes Movie Information"},
    {"Localizable", "FetchTagValuesTaskTitle", "Fetching Tag Values"},
    {"Localizable", "FileExportImagesTaskTitle", "Exporting Images"},
    {"Localizable", "FileExportToPhotosTaskTitle", "Exporting to Photos"},
    {"Localizable", "FolderExportGeotagTaskTitle", "Exporting Geotags"},
    {"Localizable", "FolderImportGeotagTaskTitle", "Importing Geotags"},
    {"Localizable", "ImportCSVTableTaskTitle", "Importing CSV Table"},
    {"Localizable", "ExportCSVTableTaskTitle", "Exporting CSV Table"},
    {"Localizable", "MediaKindAudio", "Audio"},
    {"Localizable", "MediaKindImage", "Image"},
    {"Localizable", "MediaKindMovie", "Movie"},
    {"Localizable", "MediaKindSidecar", "Sidecar"},
    {"Localizable", "MediaKindOther", "Other"},
    {"Localizable", "LanguageLocal", "System Language"},
    {"Localizable", "LanguageLocalValue", "System"},
    {"Localizable", "LanguageCzech", "Czech"},
    {"Localizable", "LanguageGerman", "German"},
    {"Localizable", "LanguageEnglish", "English"},
    {"Localizable", "LanguageEnglishCA", "Canadian English"},
    {"Localizable", "LanguageEnglishGB", "British English"},
    {"Localizable", "LanguageSpanish", "Spanish"},
    {"Localizable", "LanguageFinnish", "Finnish"},
    {"Localizable", "LanguageFrench", "French"},
    {"Localizable", "LanguageItalian", "Italian"},
    {"Localizable", "LanguageJapanese", "Japanese"},
    {"Localizable", "LanguageKorean", "Korean"},
    {"Localizable", "LanguageDutch", "Dutch"},
    {"Localizable", "LanguagePolish", "Polish"},
    {"Localizable", "LanguageRussian", "Russian"},
    {"Localizable", "LanguageSlovak", "Slovak"},
    {"Localizable", "LanguageSwedish", "Swedish"},
    {"Localizable", "LanguageTurkish", "Turkish"},
    {"Localizable", "LanguageChineseCN", "Simplified Chinese"},
    {"Localizable", "LanguageChineseTW", "Traditional Chinese"},
    {"Localizable", "DateEditionSelect", "Set"},
    {"Localizable", "DateEditionUpdate", "Update"},
    {"Localizable", "DateEditionShift", "Shift"},
    {"Localizable", "DateEditionRestore", "Restore"},
    {"Localizable", "DateEditionRemove", "Remove"},
    {"Localizable", "TagComparisonTagsTitle", "Tags"},
    {"Sections", "File", "File"},
    {"Sections", "General", "General"},
    {"Sections", "Information", "Information"},
    {"Sections", "Date and Time", "Date and Time"},
    {"Sections", "Camera", "Camera"},
    {"Sections", "Camera Settings", "Camera Settings"},
    {"Sections", "Lens", "Lens"},
    {"Sections", "GPS Coordinates", "GPS Coordinates"},
    {"Sections", "GPS And Location", "GPS And Location"},
    {"Sections", "Advanced Settings", "Advanced Settings"},
    {"Sections", "Dimension And Resolution", "Dimension And Resolution"},
};

// Country names: key, text.
constexpr std::pair<const char*, const char*> englishCountries[] = {
#include "corvane/utilities/detail/CountryNames.inc"
};

struct BundleCloser {
    void operator()(UResourceBundle* b) const { ures_close(b); }
};
using Bundle = std::unique_ptr<UResourceBundle, BundleCloser>;

std::optional<std::string> utf8String(UResourceBundle* resource) {
    UErrorCode status = U_ZERO_ERROR;
    std::string result;
    int32_t length = 0;
    ures_getUTF8String(resource, nullptr, &length, true, &status);
    if (status != U_BUFFER_OVERFLOW_ERROR && U_FAILURE(status)) return std::nullopt;
    status = U_ZERO_ERROR;
    result.resize(static_cast<std::size_t>(length) + 1);
    length = static_cast<int32_t>(result.size());
    ures_getUTF8String(resource, result.data(), &length, true, &status);
    if (U_FAILURE(status)) return std::nullopt;
    result.resize(static_cast<std::size_t>(length));
    return result;
}

void writeQuoted(std::ostream& out, const std::string& text) {
    out << '"';
    for (char c : text) {
        if (c == '"' || c == '\\') out << '\\';
        if (c == '\n')
            out << "\\n";
        else
            out << c;
    }
    out << '"';
}

} // namespace

const StringTables::Tables& StringTables::english() {
    static const Tables tables = [] {
        Tables t;
        for (const auto& e : englishEntries)
            t[e.table][e.key].text = e.text;
        // Plain text when there is nothing to count; with the error count as
        // argument, the plural forms.
        auto& errors = t[std::string(defaultTable)]["AbstractTaskNoErrors"];
        errors.text = "No errors";
        errors.plurals = {{"zero", "No errors"}, {"one", "%ld error"}, {"other", "%ld errors"}};
        auto& countries = t[std::string(countryTable)];
        for (const auto& [key, name] : englishCountries)
            countries[key].text = name;
        return t;
    }();
    return tables;
}

const StringTables::Entry* StringTables::find(const Tables& tables, std::string_view table,
                                              std::string_view key) {
    auto t = tables.find(std::string(table));
    if (t == tables.end()) return nullptr;
    auto e = t->second.find(std::string(key));
    return e == t->second.end() ? nullptr : &e->second;
}

std::optional<StringTables::Tables> StringTables::loadResourceBundle(const std::filesystem::path& directory,
                                                                     const std::string& locale) {
    if (directory.empty() || locale.empty() || !std::filesystem::exists(directory / (locale + ".res")))
        return std::nullopt;
    UErrorCode status = U_ZERO_ERROR;
    const std::string package = (directory / "").string();
    Bundle root(ures_openDirect(package.c_str(), locale.c_str(), &status));
    if (U_FAILURE(status) || !root) return std::nullopt;

    Tables tables;
    ures_resetIterator(root.get());
    while (ures_hasNext(root.get())) {
        status = U_ZERO_ERROR;
        Bundle table(ures_getNextResource(root.get(), nullptr, &status));
        if (U_FAILURE(status) || ures_getType(table.get()) != URES_TABLE) continue;
        auto& target = tables[ures_getKey(table.get())];
        ures_resetIterator(table.get());
        while (ures_hasNext(table.get())) {
            status = U_ZERO_ERROR;
            Bundle item(ures_getNextResource(table.get(), nullptr, &status));
            if (U_FAILURE(status)) continue;
            Entry entry;
            if (ures_getType(item.get()) == URES_STRING) {
                auto text = utf8String(item.get());
                if (!text) continue;
                entry.text = std::move(*text);
            } else if (ures_getType(item.get()) == URES_TABLE) {
                // { text {...} one {...} other {...} }: plain text and plural forms.
                ures_resetIterator(item.get());
                while (ures_hasNext(item.get())) {
                    status = U_ZERO_ERROR;
                    Bundle form(ures_getNextResource(item.get(), nullptr, &status));
                    if (U_FAILURE(status) || ures_getType(form.get()) != URES_STRING) continue;
                    auto text = utf8String(form.get());
                    if (!text) continue;
                    const std::string name = ures_getKey(form.get());
                    if (name == "text")
                        entry.text = std::move(*text);
                    else
                        entry.plurals[name] = std::move(*text);
                }
            } else {
                continue;
            }
            target[ures_getKey(item.get())] = std::move(entry);
        }
    }
    return tables;
}

void StringTables::writeTemplate(std::ostream& out, const std::string& locale) {
    // Sorted, so that successive templates diff cleanly.
    std::map<std::string, std::map<std::string, const Entry*>> sorted;
    for (const auto& [tableName, table] : english())
        for (const auto& [key, entry] : table)
            sorted[tableName][key] = &entry;
    static constexpr const char* pluralOrder[] = {"zero", "one", "two", "few", "many", "other"};

    out << "// Translation of the Corvane string tables. Translate the texts, keep the keys;\n"
           "// compile with: genrb -e UTF-8 -d <directory> "
        << locale << ".txt\n";
    out << locale << " {\n";
    for (const auto& [tableName, entries] : sorted) {
        out << "    ";
        writeQuoted(out, tableName);
        out << " {\n";
        for (const auto& [key, entry] : entries) {
            out << "        ";
            writeQuoted(out, key);
            if (entry->plurals.empty()) {
                out << " { ";
                writeQuoted(out, entry->text);
                out << " }\n";
                continue;
            }
            out << " {\n            text { ";
            writeQuoted(out, entry->text);
            out << " }\n";
            for (const char* category : pluralOrder) {
                auto it = entry->plurals.find(category);
                if (it == entry->plurals.end()) continue;
                out << "            " << category << " { ";
                writeQuoted(out, it->second);
                out << " }\n";
            }
            out << "        }\n";
        }
        out << "    }\n";
    }
    out << "}\n";
}

} // namespace corvane
