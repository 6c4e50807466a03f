#include "HostileSessions.h"

#include <algorithm>
#include <string>

#include "BlockPayloads.h"
#include "SesBuilder.h"
#include "SessionPayloads.h"
#include "TrackPayloads.h"

namespace morvanta::bench {
namespace {

using testing::AutomationSample;
using testing::Block;
using testing::BlockFade;
using testing::Bytes;
using testing::SesBuilder;
using testing::TrackEntry;

constexpr const char* kVersion = "Audition 3.0";
constexpr std::int32_t kSampleRate = 44100;
constexpr std::int32_t kFirstWaveId = 100001;
constexpr std::int32_t kFirstBlockId = 100001;
constexpr std::int32_t kFirstBusId = 20001;

SesBuilder Head() {
    SesBuilder builder;
    builder.Chunk("hdr ", testing::HeaderBytes(kSampleRate)).Version(kVersion, 32);
    return builder;
}

Bytes OneWave() {
    return testing::WaveListBytes({{"wav ", kFirstWaveId, "C:\\Takes\\take.wav", 441000}}, testing::WaveLayout::Padded);
}

std::vector<AutomationSample> Ramp(int count, std::int32_t step) {
    std::vector<AutomationSample> points;
    for (int i = 0; i < count; ++i) points.push_back({i * step, 0.25 + 0.5 * (i % 2)});
    return points;
}

Bytes Tracks(const std::vector<TrackEntry>& entries) {
    std::vector<Bytes> bytes;
    bytes.reserve(entries.size());
    for (const TrackEntry& entry : entries) bytes.push_back(testing::TrackEntryBytes(entry));
    return testing::UpperTrksPayload(true, static_cast<std::int32_t>(entries.size()), bytes);
}

// Plain tracks numbered from 1, the first `buses` of them bus tracks.
std::vector<TrackEntry> NumberedTracks(int n, int buses) {
    std::vector<TrackEntry> entries;
    for (int i = 0; i < n; ++i) {
        TrackEntry entry = testing::NamedEntry(i + 1, u"Track " + std::u16string(1, u'A' + i % 26));
        if (i < buses) entry.BusId = kFirstBusId + i;
        entries.push_back(entry);
    }
    return entries;
}

// The points of an envelope, in lanes of at most what a lane holds.
Bytes Envelope(std::int32_t clipId, int points) {
    testing::Ep20Group group{clipId, {}};
    for (int done = 0; done < points;) {
        const int count = std::min(points - done, 30000);
        std::vector<testing::EnvelopeSample> lane;
        for (int i = 0; i < count; ++i) lane.push_back({(done + i) * 10, 0.5 + 0.25 * ((done + i) % 2)});
        group.Lanes.push_back({1, lane});
        done += count;
    }
    return testing::Ep20Payload({group});
}

}  // namespace

std::vector<std::uint8_t> TrackAutomationSession(int n) {
    const int buses = std::max(1, n / 8);
    std::vector<TrackEntry> entries = NumberedTracks(n, buses);
    for (int i = buses; i < n; ++i) {
        TrackEntry& entry = entries[static_cast<std::size_t>(i)];
        entry.OutputBusId = kFirstBusId + i % buses;
        entry.Eq = {1, 120.0, 6.0, 150.0, 0, 1000.0, -3.0, 200.0, 8000.0, 12.0, 100.0, 0};
        entry.Volume = Ramp(4, 100);
        entry.Mute = Ramp(4, 200);
        entry.Pan = Ramp(4, 300);
    }
    return Head().Chunk("LIST", OneWave()).Chunk("TRKS", Tracks(entries)).Build();
}

std::vector<std::uint8_t> SendAutomationSession(int n) {
    const int buses = std::max(1, n / 8);
    std::vector<TrackEntry> entries = NumberedTracks(n, buses);
    for (int i = buses; i < n; ++i) {
        testing::SendEntry send;
        send.OutputBus = kFirstBusId + i % buses;
        send.Level = 0.5;
        send.Parameters = {testing::AutomatedParameter("Power On/Off", Ramp(2, 50)),
                           testing::AutomatedParameter("Level", Ramp(2, 60)),
                           testing::AutomatedParameter("Pan", Ramp(2, 70), 10.0)};
        entries[static_cast<std::size_t>(i)].Sends = {send};
    }
    return Head().Chunk("LIST", OneWave()).Chunk("TRKS", Tracks(entries)).Build();
}

std::vector<std::uint8_t> SharedClipIdSession(int n) {
    std::vector<Block> blocks;
    std::vector<BlockFade> fades;
    for (int i = 0; i < n; ++i) {
        Block b;
        b.BlockId = kFirstBlockId;
        b.WaveId = kFirstWaveId;
        b.TrackId = i == 0 ? 1 : 2;
        b.Start = i * 1000;
        b.Length = 1500;
        blocks.push_back(b);
        fades.push_back({.FadeInLength = 10 + i, .FadeOutLength = 20, .FadeInShape = 19, .FadeOutShape = 19});
    }
    return Head()
        .Chunk("LIST", OneWave())
        .Chunk("TRKS", Tracks(NumberedTracks(2, 0)))
        .Chunk("bk25", testing::Bk25Payload(kVersion, blocks, fades))
        .Chunk("ep20", Envelope(kFirstBlockId, n))
        .Build();
}

std::vector<std::uint8_t> SharedFileIdSession(int n) {
    std::vector<testing::WaveEntry> waves;
    for (int i = 0; i < n; ++i)
        waves.push_back({i == 0 ? "VDEO" : "wav ", kFirstWaveId, "C:\\Takes\\take " + std::to_string(i) + ".wav", 441000});
    std::vector<Block> blocks;
    for (int i = 0; i < n; ++i) {
        Block b;
        b.BlockId = kFirstBlockId + i;
        b.WaveId = kFirstWaveId;
        b.TrackId = 1 + i % 2;
        b.Start = i * 1000;
        blocks.push_back(b);
    }
    return Head()
        .Chunk("LIST", testing::WaveListBytes(waves, testing::WaveLayout::Padded))
        .Chunk("TRKS", Tracks(NumberedTracks(2, 0)))
        .Chunk("bk25", testing::Bk25Payload(kVersion, blocks))
        .Build();
}

std::vector<std::uint8_t> ClipsOverTracksSession(int n) {
    std::vector<Block> blocks;
    std::vector<testing::Ep20Group> groups;
    for (int i = 0; i < 8 * n; ++i) {
        Block b;
        b.BlockId = kFirstBlockId + i;
        b.WaveId = kFirstWaveId;
        b.TrackId = 1 + i % n;
        b.Start = (i / n) * 50000;
        b.Length = 40000;
        blocks.push_back(b);
        groups.push_back({b.BlockId, {{1, {{0, 1.0}, {20000, 0.5}}}}});
    }
    return Head()
        .Chunk("LIST", OneWave())
        .Chunk("TRKS", Tracks(NumberedTracks(n, 0)))
        .Chunk("bk25", testing::Bk25Payload(kVersion, blocks))
        .Chunk("ep20", testing::Ep20Payload(groups))
        .Build();
}

std::vector<std::uint8_t> MetronomePatternSession(int n) {
    std::string pattern;
    for (int i = 0; i < n; ++i) pattern += i % 4 == 0 ? "1 " : "3 ";
    return Head().Chunk("mtro", testing::MetronomeBytes(4, 1, pattern)).Build();
}

}  // namespace morvanta::bench
