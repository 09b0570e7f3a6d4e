// `corvane completion bash|zsh` and `corvane manpage`: a shell completion script and a manual page,
// both made from the command-line definition itself, so that every command and option added later
// is in them without further work.
#include "Commands.hpp"
#include "Output.hpp"

#include "corvane/Version.hpp"

#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

namespace corvane::cli {

namespace {

// The commands a person sees in the help (a command without a group is hidden).
std::vector<const CLI::App*> visibleSubcommands(const CLI::App& app) {
    return app.get_subcommands([](const CLI::App* c) { return !c->get_group().empty(); });
}

// The option words of a command ("-n", "--raw", ...), and those of them that take a value.
void optionWords(const CLI::App& app, std::string& words, std::string& valued) {
    for (const CLI::Option* option : app.get_options()) {
        if (option->get_positional()) continue;
        std::vector<std::string> names;
        for (const auto& name : option->get_snames())
            names.push_back("-" + name);
        for (const auto& name : option->get_lnames())
            names.push_back("--" + name);
        for (const auto& name : names) {
            words += (words.empty() ? "" : " ") + name;
            if (option->get_type_size_max() > 0) valued += (valued.empty() ? "" : "|") + name;
        }
    }
}

// One `case` branch a command path ("", "read", "preset list"): its options and subcommands.
void bashCases(const CLI::App& app, const std::string& path, std::ostringstream& out) {
    std::string words, valued;
    optionWords(app, words, valued);
    std::string commands;
    for (const CLI::App* command : visibleSubcommands(app))
        commands += (commands.empty() ? "" : " ") + command->get_name();
    out << "    \"" << path << "\") options=\"" << words << "\" commands=\"" << commands << "\" valued=\""
        << valued << "\" ;;\n";
    for (const CLI::App* command : visibleSubcommands(app))
        bashCases(*command, path.empty() ? command->get_name() : path + " " + command->get_name(), out);
}

std::string bashScript(const CLI::App& app) {
    std::ostringstream out;
    out << "# bash completion for corvane " << CORVANE_VERSION << ", made by `corvane completion bash`\n"
        << "_corvane_words() {\n"
        << "    case \"$1\" in\n";
    bashCases(app, "", out);
    out << "    *) options=\"\" commands=\"\" valued=\"\" ;;\n"
        << "    esac\n"
        << "}\n"
        << "_corvane() {\n"
        << "    local cur=\"${COMP_WORDS[COMP_CWORD]}\" path=\"\" word i skip=0\n"
        << "    local options commands valued\n"
        << "    # The command path so far: the words that name commands, past options and their values.\n"
        << "    for ((i = 1; i < COMP_CWORD; i++)); do\n"
        << "        word=\"${COMP_WORDS[i]}\"\n"
        << "        if ((skip)); then skip=0; continue; fi\n"
        << "        _corvane_words \"$path\"\n"
        << "        if [[ \"$word\" == -* ]]; then\n"
        << "            [[ \"|$valued|\" == *\"|$word|\"* ]] && skip=1\n"
        << "        elif [[ \" $commands \" == *\" $word \"* ]]; then\n"
        << "            path=\"${path:+$path }$word\"\n"
        << "        fi\n"
        << "    done\n"
        << "    _corvane_words \"$path\"\n"
        << "    if ((skip)); then\n"
        << "        COMPREPLY=()\n"
        << "    elif [[ \"$cur\" == -* ]]; then\n"
        << "        COMPREPLY=($(compgen -W \"$options\" -- \"$cur\"))\n"
        << "    elif [[ -n \"$commands\" ]]; then\n"
        << "        COMPREPLY=($(compgen -W \"$commands\" -- \"$cur\"))\n"
        << "    else\n"
        << "        COMPREPLY=($(compgen -f -- \"$cur\"))\n"
        << "    fi\n"
        << "}\n"
        << "complete -o filenames -o bashdefault -F _corvane corvane\n";
    return out.str();
}

// zsh runs the bash function through its bash completion layer.
std::string zshScript(const CLI::App& app) {
    return "#compdef corvane\n"
           "# zsh completion for corvane, made by `corvane completion zsh`\n"
           "autoload -U +X bashcompinit && bashcompinit\n" +
           bashScript(app);
}

// Text for roff: backslashes doubled, a leading dot or quote escaped, hyphens as minus signs.
std::string roff(const std::string& text) {
    std::string out;
    for (char c : text) {
        if (c == '\\')
            out += "\\e";
        else if (c == '-')
            out += "\\-";
        else
            out += c;
    }
    if (!out.empty() && (out.front() == '.' || out.front() == '\'')) out.insert(0, "\\&");
    return out;
}

void manCommand(const CLI::App& command, const std::string& path, std::ostringstream& out) {
    out << ".SS \"" << roff(path) << "\"\n" << roff(command.get_description()) << "\n";
    for (const CLI::Option* option : command.get_options()) {
        if (option->get_name() == "--help" || option->get_name() == "-h,--help") continue;
        out << ".TP\n.B " << roff(option->get_name(false, true)) << "\n"
            << roff(option->get_description()) << "\n";
    }
    for (const CLI::App* sub : visibleSubcommands(command))
        manCommand(*sub, path + " " + sub->get_name(), out);
}

std::string manPage(const CLI::App& app) {
    std::ostringstream out;
    out << ".TH CORVANE 1 \"\" \"corvane " << CORVANE_VERSION << "\" \"User Commands\"\n"
        << ".SH NAME\ncorvane \\- read, compare and edit the metadata of media files\n"
        << ".SH SYNOPSIS\n.B corvane\n[\\fIOPTIONS\\fR] \\fICOMMAND\\fR [\\fIARGUMENTS\\fR]\n"
        << ".SH DESCRIPTION\n"
        << roff(app.get_description()) << "\n.PP\n"
        << "Each command's own options are shown by \\fBcorvane help\\fR \\fICOMMAND\\fR.\n"
        << ".SH OPTIONS\n";
    for (const CLI::Option* option : app.get_options())
        out << ".TP\n.B " << roff(option->get_name(false, true)) << "\n"
            << roff(option->get_description()) << "\n";
    out << ".SH COMMANDS\n";
    for (const CLI::App* command : visibleSubcommands(app))
        manCommand(*command, command->get_name(), out);
    out << ".SH EXIT STATUS\n"
        << ".TP\n.B 0\nSuccess.\n"
        << ".TP\n.B 1\nSome file failed; the others were done.\n"
        << ".TP\n.B 2\nUsage error: the command line can't be run as given; nothing was done.\n"
        << ".TP\n.B 130\nInterrupted (SIGINT or SIGTERM).\n";
    return out.str();
}

} // namespace

void addCompletionCommands(CLI::App& app, int& exitCode) {
    auto* completion = app.add_subcommand(
        "completion",
        "Print a shell completion script: eval \"$(corvane completion bash)\", or save it for zsh");
    auto shell = std::make_shared<std::string>();
    completion->add_option("SHELL", *shell, "bash or zsh")->required()->check(CLI::IsMember({"bash", "zsh"}));
    completion->callback([&app, shell, &exitCode] {
        std::cout << (*shell == "bash" ? bashScript(app) : zshScript(app));
        exitCode = exitSuccess;
    });
    auto* manpage = app.add_subcommand("manpage", "Print the manual page (roff), made from the help texts");
    auto output = std::make_shared<std::string>();
    manpage->add_option("-o,--output", *output, "Write it to this file instead");
    manpage->callback([&app, output, &exitCode] {
        if (output->empty()) {
            std::cout << manPage(app);
            exitCode = exitSuccess;
            return;
        }
        std::ofstream file(*output, std::ios::binary | std::ios::trunc);
        file << manPage(app);
        file.close();
        if (!file) {
            Reporter().fileError(*output, "can't be written");
            exitCode = exitFileFailed;
            return;
        }
        exitCode = exitSuccess;
    });
}

} // namespace corvane::cli
