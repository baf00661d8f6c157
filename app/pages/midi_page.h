#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/melody_notes.h"
#include "app/pages/page.h"
#include "app/picture.h"
#include "app/voice_picture.h"
#include "midi/smf_melody.h"

namespace tonadex::app {

// Makes a melody of a MIDI file: shows its voices, of which one is chosen, and the result.
class MidiPage {
 public:
  explicit MidiPage(SharedState& state);

  void midiVoices_Click();
  void midiVoicesView_Click();
  // Makes the result anew.
  void midiChoice_Change();
  void highestTaken_Click();
  void firstTaken_Click();
  void phonesOctaves_Click();
  void filesOctaves_Click();
  void listenMidi_Click();

  // The voices one under the other. Empty while no file is open.
  Picture MidiVoicesPicture(double width, double height) const;

  Drawing midiDrawing;  // of the result

  Control midiTitle;
  Control midiVoicesLabel, midiVoice, midiVoices, midiVoicesView;
  Control midiBarLabel, midiBar, midiNotesLabel, midiNotes;
  Control midiTakenLabel, highestTaken, firstTaken;       // 1 in the value of firstTaken
  Control midiOctavesLabel, phonesOctaves, filesOctaves;  // and of filesOctaves: chosen
  Control midiView, midiText, midiRemarks;
  Control leaveMidi, listenMidi, useMidi, saveMidi;

  static std::span<const ControlInfo> Rows();
  static Part Layout();

 protected:
  // `name` is the file's, with or without its extension. Errors: invalid argument when it is
  // damaged or has no notes, with a sentence that says where.
  void ReadMidiFile(std::string_view bytes, std::string_view name);
  void CloseMidi();
  void RefreshMidi();

 private:
  midi::SmfChoice Choice() const;
  void SelectVoice(int voice);
  void Choose(Control& choice, int value);

  SharedState& state_;
  std::string name_;  // without the extension
  midi::SmfFile file_;
  std::vector<midi::SmfVoice> voices_;
  std::vector<VoiceRoll> rolls_;
};

}  // namespace tonadex::app
