// <clipGroups>: group hues, numbers and the items the clip writer numbered.
#include <gtest/gtest.h>

#include "writer/DocumentWriter.h"

namespace morvanta {
namespace {

TEST(ClipGroups, NothingWithoutGroups) {
    Session s;
    s.Clips.push_back({.ClipId = 1, .TrackId = 1, .GroupId = 1});
    std::vector<Diagnostic> warnings;
    const ConvertOptions options;
    DocumentWriter w{s, options, warnings, {}};
    WriteClipGroups(w);
    EXPECT_EQ(w.out, "");
}

TEST(ClipGroups, GroupsListTheItemsTheClipWriterNumbered) {
    Session s;
    SessionFile file;
    file.FileId = 2000001;
    file.Kind = 1;
    s.SessionFiles = {file};
    auto clip = [](std::int32_t id, std::int32_t track, std::int32_t group, std::int32_t fileId = 2000001) {
        return Clip{.ClipId = id, .FileId = fileId, .Start = 10.0 * id, .TrackId = track, .GroupId = group};
    };
    s.Clips.push_back(clip(1, 10001, 1));
    s.Clips.push_back(clip(2, 10001, 2));
    s.Clips.push_back(clip(3, 10001, 1, 2000009));  // its file is not listed: left out, no item
    s.Clips.push_back(clip(4, 10002, 1));
    s.Clips.push_back(clip(5, 10001, 0));
    s.Clips.push_back(clip(6, 10001, 2));
    // Hues 1, 3 and 239 are 1.5, 4.5 and 358.5 degrees: halves go to the even neighbour.
    s.ClipGroups = {{1, 1}, {3, 2}, {239, 3}, {0, 0}};

    std::vector<Diagnostic> warnings;
    const ConvertOptions options;
    DocumentWriter w{s, options, warnings, {}};
    Track track;
    for (std::int32_t id : {10001, 10002}) {
        track.TrackId = id;
        WriteAudioClips(w, track);
    }
    w.out.clear();
    WriteClipGroups(w);
    EXPECT_EQ(w.out, R"(<clipGroups>
<clipGroup hue="2" id="0">
<name>Group 1</name>
<item clipID="0" trackID="10001"/>
<item clipID="0" trackID="10002"/>
</clipGroup>
<clipGroup hue="4" id="1">
<name>Group 2</name>
<item clipID="1" trackID="10001"/>
<item clipID="3" trackID="10001"/>
</clipGroup>
<clipGroup hue="358" id="2">
<name>Group 3</name>
</clipGroup>
<clipGroup hue="0" id="-1">
<name>Group 0</name>
</clipGroup>
</clipGroups>
)");
}

}  // namespace
}  // namespace morvanta
