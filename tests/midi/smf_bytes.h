#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "midi/mMidiLibOut.h"
#include "midi/smf_reader.h"

// Builds standard MIDI files independently of the program's writer.
namespace tonadex::test {

inline std::string VariableNumber(std::uint32_t number) {
  std::string bytes(1, static_cast<char>(number & 0x7F));
  while ((number >>= 7) > 0) {
    bytes.insert(bytes.begin(), static_cast<char>(0x80 | (number & 0x7F)));
  }
  return bytes;
}

// A track of these notes; notes with the same key and channel must not overlap.
inline std::string TrackOf(const std::vector<midi::SmfNote>& notes) {
  struct Event {
    std::uint32_t tick;
    bool on;
    midi::SmfNote note;
  };
  std::vector<Event> events;
  for (const midi::SmfNote& note : notes) {
    events.push_back({note.end, false, note});
    events.push_back({note.start, true, note});
  }
  std::ranges::stable_sort(events, [](const Event& a, const Event& b) {
    return a.tick != b.tick ? a.tick < b.tick : a.on < b.on;
  });
  std::string track;
  std::uint32_t now = 0;
  int running = 0;
  for (const Event& event : events) {
    track += VariableNumber(event.tick - now);
    now = event.tick;
    if (const int status = 0x90 | event.note.channel; status != running) {
      track += static_cast<char>(running = status);
    }
    track += static_cast<char>(event.note.key);
    track += static_cast<char>(event.on ? event.note.velocity : 0);
  }
  return track + std::string("\0\xFF\x2F\0", 4);
}

inline std::string SmfOf(const std::vector<std::vector<midi::SmfNote>>& tracks, int division) {
  const auto count = static_cast<std::int16_t>(tracks.size());
  std::string bytes = "MThd" + midi::LongToBytes(6) + midi::WordToBytes(1) +
                      midi::WordToBytes(count) + midi::WordToBytes(division);
  for (const auto& notes : tracks) {
    const std::string track = TrackOf(notes);
    bytes += "MTrk" + midi::LongToBytes(static_cast<std::int32_t>(track.size())) + track;
  }
  return bytes;
}

}  // namespace tonadex::test
