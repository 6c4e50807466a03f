// <files>, the list the clips point into by position
// (docs/format/document.md, "File list").
#include "writer/DocumentWriter.h"
#include "services/NumberText.h"
#include "services/TextHelpers.h"

namespace morvanta {
namespace {

// The way from a file's own folder to the file: "./" and its name when the
// path has a folder part, nothing for a bare name.
std::string RelativePathOf(const std::string& path) {
    if (path.find_first_of("\\/") == std::string::npos) return {};
    return "./" + FileNameOf(path);
}

}  // namespace

void WriteFiles(DocumentWriter& w) {
    w.Line("<files>");
    const auto& files = w.session.SessionFiles;
    for (std::size_t k = 0; k < files.size(); ++k) {
        const SessionFile& file = files[k];
        const std::string path = w.Text(EscapeText(TrimBlanks(file.Path)));
        const std::string id = IntegerText(static_cast<double>(k));
        if (w.options.NoPathNames) {
            w.Line(R"(<file absolutePath=")" + FileNameOf(path) + R"(" id=")" + id + R"("/>)");
        } else if (file.Kind == kFileKindVideo) {
            w.Line(R"(<file absolutePath=")" + path + R"(" id=")" + id + R"("/>)");
        } else {
            std::string line = R"(<file absolutePath=")" + path + R"(" id=")" + id + R"(")";
            const std::string relative = ReplaceAll(TrimBlanks(RelativePathOf(path)), "\\", "/");
            if (!relative.empty()) line += R"( relativePath=")" + relative + R"(")";
            w.Line(line + "/>");
        }
    }
    w.Line("</files>");
}

}  // namespace morvanta
