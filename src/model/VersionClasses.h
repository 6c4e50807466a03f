// Writer-version classes: each is an exact, case-sensitive prefix test on the
// text of the file's "vers" chunk. Layout differences branch on these, at the
// place where a layout differs (docs/format/container.md).
#pragma once

#include <string_view>

namespace morvanta {

inline bool Pro12(std::string_view v) { return v.starts_with("Cool Edit Pro 1.2"); }
inline bool Pro12a(std::string_view v) { return v.starts_with("Cool Edit Pro 1.2a"); }
inline bool Ce2000(std::string_view v) { return v.starts_with("Cool Edit 2000 1.0"); }
inline bool Pro20(std::string_view v) { return v.starts_with("Cool Edit Pro 2.0"); }
inline bool Pro200(std::string_view v) { return v.starts_with("Cool Edit Pro 2.00"); }
inline bool Pro21(std::string_view v) { return v.starts_with("Cool Edit Pro 2.1"); }
inline bool Aud10(std::string_view v) { return v.starts_with("Audition 1.0"); }
inline bool Aud15(std::string_view v) { return v.starts_with("Audition 1.5"); }
inline bool Aud20(std::string_view v) { return v.starts_with("Audition 2.0"); }
inline bool Aud30(std::string_view v) { return v.starts_with("Audition 3.0"); }

// The version gate: the nine classes a file may belong to for conversion.
// "Cool Edit Pro 2.01" and "Cool Edit Pro 1.0" are refused.
inline bool IsAcceptedVersion(std::string_view v) {
    return Aud30(v) || Aud20(v) || Aud15(v) || Aud10(v) || Pro200(v) || Pro12a(v) || Ce2000(v) ||
           Pro21(v) || Pro12(v);
}

}  // namespace morvanta
