#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

#include "app/control_table.h"
#include "app/pages/midi_page.h"
#include "app/pages/options_page.h"
#include "app/pages/page.h"
#include "app/pages/repertoire_page.h"
#include "app/pages/search_page.h"
#include "app/pages/start_page.h"
#include "app/pages/typing_page.h"
#include "app/pages/web_page.h"
#include "app/program.h"
#include "app/session_state.h"
#include "core/message_box.h"

namespace tonadex::app {

// The main window's model: the navigation row here, and the pages. A shell copies what the user did
// into the controls (text, listIndex), calls the handlers through RunHandler, calls Refresh and
// draws the controls. All texts are Windows-1252. The table of controls is in control_table.h,
// their layout in layout.h. Handlers throw core::RunTimeError for errors that they do not skip.
//
// The names come from the program's first version:
//   cmd, pic       button (pic: one with a picture)   lbl, label, Label   label
//   txt, text      text box                           cmb                 list to choose from
//   List1          the melodies found, or those of the repertoire
//   paginaactual   the page that is shown             ocultapagina        hides it
//   inicio, buscar, repertorio, opciones, ayuda       start, search, repertoire, options, help
//   906            the server's page                  azar                random pick
//   compo          the composer                       sube, subir         upload
//   escucha        listen (also "scucha")             avisos              notices
//   marcas, formatos                                  makes of phones, models or formats
class Form1 : public SharedState,
              public StartPage,
              public SearchPage,
              public RepertoirePage,
              public OptionsPage,
              public TypingPage,
              public MidiPage,
              public WebPage {
 public:
  explicit Form1(Program& program);
  ~Form1();
  Form1(const Form1&) = delete;
  Form1& operator=(const Form1&) = delete;

  // Hides all pages but the start-up page and sends WebBrowser1 there.
  void Form_Load();
  // The user closes the window: saves the chosen model and the state and ends the program. While a
  // melody plays or a request runs it cancels that instead, and the program ends when the waiting
  // handler has returned. Call it directly then: RunHandler drops events while a request runs.
  void Form_QueryUnload();

  void cmdinicio_Click();
  void cmdbuscar_Click();
  void cmdrepertorio_Click();
  void cmd906_Click();
  void cmdopciones_Click();
  void cmdayuda_Click();
  // To the typing guide of the result that the repertoire page shows, and back.
  void teclearButton_Click();
  void leaveGuide_Click() { ShowPage(kRepertoirePage); }
  void typeItem_Click();  // converts the selected melody first
  // The selected melody into the box for RTTTL texts.
  void editItem_Click();
  // What is composed, or the RTTTL text, becomes a file of the repertoire, which is shown.
  void saveComposed_Click();
  void saveRtttl_Click() { KeepMelody(TypedRtttl()); }
  void keepNewest_Click();  // the selected one of the server's newest melodies
  // Files dropped on the window, or opened: their melodies are added to the repertoire. A single
  // MIDI file is shown instead, for the user to choose from its voices.
  void FilesDropped(std::span<const std::filesystem::path> paths);
  void addButton_Click();
  // Melodies deleted or replaced before, chosen from the bin. Their files stay there.
  void recoverItem_Click();
  // Shows the voices of a MIDI file, of which the user makes a melody; a message box when the file
  // is damaged or has no notes. `name` is the file's.
  void OpenMidiFile(std::string_view bytes, std::string_view name);
  // The melody made of it into the box for RTTTL texts, or into the repertoire; or back.
  void useMidi_Click();
  void saveMidi_Click() { KeepMelody(MidiMelody()); }
  void leaveMidi_Click();
  // Enter or a double click on a row: plays in the repertoire, downloads on the search page.
  void List1_DblClick();
  // Writes down what is to survive the end of the program.
  void saveTimer_Timer();
  // Whether there are changes that it will write.
  bool SavesSoon() const { return saveTimer.enabled; }

  void ocultapagina();

  // For the message box that is shown while a melody plays: the window then shows its bar instead,
  // until `playing` ends. Returns the bar's button, which gets the focus; nullptr for any other
  // message, which is to be a box.
  Control Form1::*ShowPlaying(const core::Message& message);
  bool playing() const { return playing_; }
  void stopButton_Click() { playing_ = false; }
  // The melody has come this far, ms: updates the bar and the display. False when nothing changed.
  bool FollowPlaying(double ms);

  // Whether the entry of a list's menu can be chosen now.
  bool Allows(const ControlInfo& list, const MenuItem& item) const;

  // Updates all derived properties of the controls; call it before drawing.
  void Refresh();

  Control cmdinicio, cmdbuscar, cmdrepertorio, cmd906, cmdopciones, cmdayuda;
  Control waitingLine;  // while a request runs
  Control phoneButton;  // the chosen phone: "Nokia 3210, 3310 …" or "Elige tu móvil"
  Control saveTimer;    // enabled by the first change after a save
  // Where the window was when the program last ended; from then on the shell keeps it up to date.
  WindowPlace windowPlace;

  Control playingText, silentLabel, playingPosition, stopButton;  // the bar while a melody plays

  static std::span<const ControlInfo> Rows();  // of the navigation row and that bar

 private:
  void AskForFiles(std::string_view title, const std::filesystem::path& folder);
  void ShowInRepertoire(const std::string& file);
  void KeepMelody(std::string_view text);
  bool LeaveFor(std::int16_t page);
  void ShowPage(std::int16_t page);

  bool formReady_ = false;
  std::int16_t beforeMidi_ = kStartPage;  // the page to go back to
  bool playing_ = false;
  SessionState session_;
};

}  // namespace tonadex::app
