#include "corvane/utilities/Localizer.hpp"

#include "corvane/utilities/KitSettings.hpp"

#include <unicode/locid.h>
#include <unicode/plurrule.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <map>
#include <system_error>
#include <unistd.h>

namespace corvane {

namespace fs = std::filesystem;

namespace {

// Appends one printf conversion of `value`, however long it comes out.
template <class T> void appendFormatted(std::string& out, const std::string& directive, T value) {
    const int length = std::snprintf(nullptr, 0, directive.c_str(), value);
    if (length <= 0) return;
    const std::size_t start = out.size();
    out.resize(start + static_cast<std::size_t>(length) + 1);
    std::snprintf(out.data() + start, static_cast<std::size_t>(length) + 1, directive.c_str(), value);
    out.resize(start + static_cast<std::size_t>(length));
}

} // namespace

Localizer& Localizer::shared() {
    static auto* localizer = new Localizer();
    return *localizer;
}

std::vector<fs::path> Localizer::defaultDirectories() {
    std::vector<fs::path> dirs;
    std::error_code ec;
    const fs::path exe = fs::read_symlink("/proc/self/exe", ec);
    if (!ec) dirs.push_back(exe.parent_path().parent_path() / "share" / "corvane" / "locale");
    dirs.emplace_back("/usr/local/share/corvane/locale");
    dirs.emplace_back("/usr/share/corvane/locale");
    return dirs;
}

std::vector<std::string> Localizer::fallbackChain(std::string_view locale) {
    std::string name(locale);
    // Drop the encoding and modifier parts of POSIX names ("fr_FR.UTF-8@euro").
    name = name.substr(0, name.find_first_of(".@"));
    std::replace(name.begin(), name.end(), '-', '_');
    std::vector<std::string> chain;
    while (!name.empty()) {
        chain.push_back(name);
        auto cut = name.rfind('_');
        if (cut == std::string::npos) break;
        name.resize(cut);
    }
    return chain;
}

std::shared_ptr<const Localizer::State> Localizer::load(fs::path directory, std::string requestedLanguage) {
    auto state = std::make_shared<State>();
    state->directory = directory;
    state->requestedLanguage = requestedLanguage;
    state->language =
        requestedLanguage.empty() ? std::string(icu::Locale::getDefault().getName()) : requestedLanguage;

    const std::vector<fs::path> dirs =
        directory.empty() ? defaultDirectories() : std::vector<fs::path>{directory};
    for (const auto& locale : fallbackChain(state->language)) {
        for (const auto& dir : dirs) {
            if (auto tables = StringTables::loadResourceBundle(dir, locale)) {
                state->chain.push_back(Translation{locale, dir / (locale + ".res"), std::move(*tables)});
                break;
            }
        }
    }
    return state;
}

std::shared_ptr<const Localizer::State> Localizer::current() {
    auto& settings = KitSettings::shared();
    fs::path directory = settings.localizationDirectory();
    std::string language = settings.localizationLanguage();
    {
        std::lock_guard lock(mutex_);
        if (state_ && state_->directory == directory && state_->requestedLanguage == language) return state_;
    }
    // Loaded outside the lock; two threads may both load, the last one wins.
    auto loaded = load(std::move(directory), std::move(language));
    std::lock_guard lock(mutex_);
    state_ = loaded;
    return loaded;
}

void Localizer::reset() {
    std::lock_guard lock(mutex_);
    state_.reset();
}

std::string Localizer::language() {
    return current()->language;
}

std::vector<fs::path> Localizer::loadedFiles() {
    std::vector<fs::path> files;
    for (const auto& t : current()->chain)
        files.push_back(t.file);
    return files;
}

std::string Localizer::text(std::string_view table, std::string_view key) {
    return localize(table, key, {});
}

const std::string& Localizer::selectForm(const StringTables::Entry& entry, const std::string& locale,
                                         const std::vector<LocalizerArgument>& args) {
    if (args.empty() || entry.plurals.empty()) return entry.text;
    const LocalizerArgument* count = nullptr;
    for (const auto& a : args)
        if (a.isInteger()) {
            count = &a;
            break;
        }
    if (!count) return entry.text;
    const long long n = count->integer();
    if (n == 0)
        if (auto it = entry.plurals.find("zero"); it != entry.plurals.end()) return it->second;
    std::string category = "other";
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::PluralRules> rules(icu::PluralRules::forLocale(icu::Locale(locale.c_str()), status));
    if (U_SUCCESS(status) && rules) {
        icu::UnicodeString selected = rules->select(static_cast<int32_t>(n));
        category.clear();
        selected.toUTF8String(category);
    }
    if (auto it = entry.plurals.find(category); it != entry.plurals.end()) return it->second;
    if (auto it = entry.plurals.find("other"); it != entry.plurals.end()) return it->second;
    return entry.text;
}

std::string Localizer::localize(std::string_view table, std::string_view key,
                                const std::vector<LocalizerArgument>& args) {
    auto state = current();
    const StringTables::Entry* entry = nullptr;
    std::string locale = "en";
    for (const auto& t : state->chain) {
        if ((entry = StringTables::find(t.tables, table, key))) {
            locale = t.locale;
            break;
        }
    }
    if (!entry) entry = StringTables::find(StringTables::english(), table, key);
    if (!entry) {
        // As the platform's look-up does: an unknown key is its own text.
        return args.empty() ? std::string(key) : format(key, args);
    }
    const std::string& text = selectForm(*entry, locale, args);
    return args.empty() ? text : format(text, args);
}

std::string Localizer::format(std::string_view fmt, const std::vector<LocalizerArgument>& args) {
    std::string out;
    out.reserve(fmt.size() + 16);
    std::size_t nextArg = 0;
    for (std::size_t i = 0; i < fmt.size(); ++i) {
        const char c = fmt[i];
        if (c != '%' || i + 1 >= fmt.size()) {
            out += c;
            continue;
        }
        std::size_t j = i + 1;
        if (fmt[j] == '%') {
            out += '%';
            i = j;
            continue;
        }
        // Optional position "n$", capped so that an absurd one is only a missing argument.
        std::size_t position = 0;
        std::size_t k = j;
        for (; k < fmt.size() && std::isdigit(static_cast<unsigned char>(fmt[k])); ++k)
            position = std::min<std::size_t>(position * 10 + static_cast<std::size_t>(fmt[k] - '0'), 1000);
        if (k > j && k < fmt.size() && fmt[k] == '$')
            j = k + 1;
        else
            position = 0;
        // Flags, width, precision.
        std::string directive = "%";
        while (j < fmt.size() && std::string_view("-+ #0").find(fmt[j]) != std::string_view::npos)
            directive += fmt[j++];
        while (j < fmt.size() && (std::isdigit(static_cast<unsigned char>(fmt[j])) || fmt[j] == '.'))
            directive += fmt[j++];
        // Length modifiers are irrelevant: arguments carry their own type.
        while (j < fmt.size() && std::string_view("hlqLzjt").find(fmt[j]) != std::string_view::npos)
            ++j;
        if (j >= fmt.size()) {
            out.append(fmt.substr(i));
            break;
        }
        const char conversion = fmt[j];
        const std::size_t index = position ? position - 1 : nextArg++;
        if (std::string_view("@sdiuxXfFeEgGc").find(conversion) == std::string_view::npos ||
            index >= args.size()) {
            // Unknown conversion or missing argument: keep the text as written.
            out.append(fmt.substr(i, j - i + 1));
            i = j;
            continue;
        }
        const LocalizerArgument& arg = args[index];
        switch (conversion) {
        case '@':
        case 's':
            if (directive.size() > 1)
                appendFormatted(out, directive + 's', arg.text().c_str());
            else
                out += arg.text();
            break;
        case 'c':
            appendFormatted(out, directive + 'c', static_cast<int>(arg.integer()));
            break;
        case 'd':
        case 'i':
        case 'u':
        case 'x':
        case 'X':
            appendFormatted(out, directive + "ll" + (conversion == 'i' ? 'd' : conversion), arg.integer());
            break;
        default:
            appendFormatted(out, directive + conversion, arg.number());
            break;
        }
        i = j;
    }
    return out;
}

} // namespace corvane
