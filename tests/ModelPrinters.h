// Readable forms of model records in test failure messages.
#pragma once

#include <ostream>

#include "model/Session.h"

namespace morvanta {

inline void PrintTo(const BlockRecord& r, std::ostream* os) {
    *os << "{BlockId " << r.BlockId << ", WaveId " << r.WaveId << ", Gains " << r.LeftGain << "/" << r.RightGain
        << ", Start " << r.Start << ", Length " << r.Length << ", SourceStart " << r.SourceStart << ", Flags "
        << r.Flags << ", TrackId " << r.TrackId << ", GroupId " << r.GroupId << ", Hue " << r.Hue << "}";
}

inline void PrintTo(const Bk25Fade& f, std::ostream* os) {
    *os << "{In " << f.FadeInLength << "/" << f.FadeInShape << "/" << f.FadeInType << ", Out " << f.FadeOutLength
        << "/" << f.FadeOutShape << "/" << f.FadeOutType << "}";
}

inline void PrintTo(const Blk2Record& r, std::ostream* os) { *os << "{BlockId " << r.BlockId << ", Hue " << r.Hue << "}"; }

inline void PrintTo(const Clip& c, std::ostream* os) {
    *os << "{ClipId " << c.ClipId << ", FileId " << c.FileId << ", SourceStart " << c.SourceStart << ", Start "
        << c.Start << ", Length " << c.Length << ", TrackId " << c.TrackId << ", TrackOrdinal " << c.TrackOrdinal
        << ", FileKind " << c.FileKind << ", Looped " << c.Looped << ", Muted " << c.Muted << ", Locked " << c.Locked
        << ", Gain " << c.Gain << ", Hue " << c.Hue << ", GroupId " << c.GroupId << "}";
}

inline void PrintTo(const ClipFade& f, std::ostream* os) {
    *os << "{ClipId " << f.ClipId << ", In " << f.FadeInLength << "/" << f.FadeInShape << "/" << f.FadeInType
        << ", Out " << f.FadeOutLength << "/" << f.FadeOutShape << "/" << f.FadeOutType << "}";
}

inline void PrintTo(const ClipPoint& p, std::ostream* os) {
    *os << "{ClipId " << p.ClipId << ", Kind " << p.Kind << ", Offset " << p.Offset << ", Value " << p.Value
        << ", TrackId " << p.TrackId << "}";
}

}  // namespace morvanta
