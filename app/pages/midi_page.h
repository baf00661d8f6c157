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
  explicit MidiPage(SharedState& state) : state_(state) {}

  void midiVoices_Click() { SelectVoice(midiVoices.listIndex); }
  void midiVoicesView_Click();
  // Makes the result anew.
  void midiChoice_Change();
  void highestTaken_Click() { Choose(firstTaken, 0); }
  void firstTaken_Click() { Choose(firstTaken, 1); }
  void phonesOctaves_Click() { Choose(filesOctaves, 0); }
  void filesOctaves_Click() { Choose(filesOctaves, 1); }
  void listenMidi_Click();

  // The voices one under the other. Empty while no file is open.
  Picture MidiVoicesPicture(double width, double height) const {
    return VoicesPicture(rolls_, midiVoices.listIndex, width, height);
  }

  Drawing midiDrawing;  // of the result

  Control midiTitle;
  Control midiVoicesLabel, midiVoice, midiVoices, midiVoicesView;
  Control midiBarLabel, midiBar, midiNotesLabel, midiNotes;
  Control midiTakenLabel, highestTaken, firstTaken;       // 1 in the value of firstTaken
  Control midiOctavesLabel, phonesOctaves, filesOctaves;  // and of filesOctaves: chosen
  Control midiView, midiText, midiRemarks;
  Control leaveMidi, listenMidi, useMidi, saveMidi;

  static std::span<const ControlInfo> Rows();
  static Part Layout(bool wide);

 protected:
  // `name` is the file's, with or without its extension. Errors: invalid argument when it is
  // damaged or has no notes, with a sentence that says where.
  void ReadMidiFile(std::string_view bytes, std::string_view name);
  // The RTTTL text made of it, "" for none.
  const std::string& MidiMelody() const { return midiText.text; }
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
