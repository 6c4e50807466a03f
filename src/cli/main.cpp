// morvanta: converts Cool Edit and Audition 1.0-3.0 sessions (.ses) to
// Audition XML sessions (.sesx) from the command line.
#include <CLI/CLI.hpp>

#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "cli/CliCommands.h"
#include "services/Platform.h"
#include "services/ProgramVersion.h"

using namespace morvanta::cli;

int main(int argc, char** argv) {
    const morvanta::Utf8Console console;
    CLI::App app{"Morvanta converts Cool Edit and Adobe Audition 1.0-3.0 multitrack sessions (.ses)\n"
                 "to Adobe Audition XML sessions (.sesx).",
                 "morvanta"};
    app.set_version_flag("--version", "morvanta " + morvanta::VersionText());
    app.require_subcommand(1);
    // Options are read the same on every system: "/r" is a path, not -r.
    app.allow_windows_style_options(false);
    const morvanta::ExampleFolders folders = morvanta::HelpExampleFolders();
    const std::string sessions(folders.Sessions);
    const std::string converted(folders.Converted);
    app.footer("\nExamples:\n"
               "  morvanta convert " + sessions + " --recursive --out " + converted + "\n"
               "  morvanta convert --language Cyrillic --overwrite=all mix.ses\n"
               "  morvanta scan " + sessions + " --recursive --json\n"
               "  morvanta info mix.ses");

    ConvertCommand convert;
    auto* convertApp = app.add_subcommand("convert", "Convert session files, or every *.ses file of folders");
    convertApp->add_option("PATH", convert.Paths, "Session files or folders")->required();
    convertApp
        ->add_option("--out,-o", convert.OutFolder,
                     "Folder for the documents (default: beside each source file); it must exist")
        ->type_name("DIR");
    const std::map<std::string, OverwriteMode> modes{
        {"ask", OverwriteMode::Ask}, {"all", OverwriteMode::All}, {"skip", OverwriteMode::Skip}};
    convertApp
        ->add_option("--overwrite", convert.Overwrite,
                     "When a document exists: ask (on a terminal), all (replace), skip (keep)")
        ->transform(CLI::CheckedTransformer(modes, CLI::ignore_case).description(""))
        ->type_name("ask|all|skip");
    convertApp->add_flag("--no-path-names", convert.NoPathNames,
                         "List media files by name only, without their folders");
    convertApp->add_flag("--well-formed", convert.WellFormed,
                         "Repair the places that would make a document no XML parser reads");
    convertApp->add_flag("--recursive,-r", convert.Recursive, "Also convert the sessions of sub-folders");
    convertApp
        ->add_option("--language", convert.Language,
                     "Recode each document to UTF-8 from a language's code page (\"Cyrillic\", \"Japanese 1\"...)")
        ->type_name("NAME");
    convertApp
        ->add_option("--catalogues", convert.Catalogues,
                     "Folder of effect catalogues to use instead of the shipped ones; it must exist")
        ->type_name("DIR");
    convertApp
        ->add_option("--jobs,-j", convert.Jobs, "Convert N files at once (default: the number of cores)")
        ->type_name("N")
        ->check(CLI::Range(1, 256).description(""));
    convertApp->add_flag("--json", convert.Json, "Print one JSON document instead of lines");

    ScanCommand scan;
    auto* scanApp = app.add_subcommand("scan", "List the session files of a folder with their writer versions");
    scanApp->add_option("DIR", scan.Folder, "Folder to scan")->required();
    scanApp->add_flag("--recursive,-r", scan.Recursive, "Include sub-folders");
    scanApp->add_flag("--json", scan.Json, "Print one JSON document instead of lines");

    InfoCommand info;
    auto* infoApp = app.add_subcommand(
        "info", "Show the header, version and chunks of one session file, and the route of each of its effects");
    infoApp->add_option("FILE", info.File, "Session file")->required();
    infoApp
        ->add_option("--catalogues", info.Catalogues,
                     "Folder of effect catalogues to use instead of the shipped ones; it must exist")
        ->type_name("DIR");
    infoApp->add_flag("--json", info.Json, "Print one JSON document instead of lines");
    infoApp->add_flag("--model", info.Model, "Print every value read from the session, one line per record");

    try {
        const std::vector<std::string> arguments = morvanta::ProgramArguments(argc, argv);
        std::vector<const char*> pointers;
        for (const std::string& argument : arguments) pointers.push_back(argument.c_str());
        app.parse(static_cast<int>(pointers.size()), pointers.data());
    } catch (const CLI::ParseError& error) {
        const int code = app.exit(error);
        return code == 0 ? kExitOk : kExitUsage;
    }

    if (*convertApp) return RunConvert(convert, std::cout, std::cerr);
    if (*scanApp) return RunScan(scan, std::cout, std::cerr);
    if (*infoApp) return RunInfo(info, std::cout, std::cerr);
    return kExitUsage;
}
