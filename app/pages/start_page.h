#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/melody_notes.h"
#include "app/pages/page.h"
#include "app/rtttl_check.h"
#include "phones/rtttl_repair.h"

namespace tonadex::nokia3210 {
class CNokia;
}

namespace tonadex::app {

// The composer and the box for RTTTL texts; both play and upload.
class StartPage {
 public:
  explicit StartPage(SharedState& state);
  ~StartPage();

  void cmdscuchacumpo_Click();
  void cmdsubecompo_Click();
  void cmdscuchartttl_Click();
  void cmdsubirmelortttl_Click();
  // Called before a typed character reaches the tempo box, not for pasted text: KeyAscii is its
  // Windows-1252 code (8 is Backspace) and is set to 0 to refuse it.
  void txtcompoTempo_KeyPress(std::int16_t& KeyAscii);
  // A key of the phone was pressed; `key` is its label.
  void keyRow_KeyPressed(std::string_view key, bool held);
  // Shows what would be mended in txtrtttlsube; nothing is changed before it is applied.
  void repairButton_Click();
  void repairList_Click();  // several melodies were pasted: which one
  void applyRepairButton_Click();
  void cancelRepairButton_Click();
  void undoRepairButton_Click();
  // Lists what came to the server last, once.
  void newsTimer_Timer();
  void hearNewest_Click();
  // The text of a box changed: update its check and its drawing. Never throw, show nothing.
  void txtmelodiacompo_Change();
  void txtrtttlsube_Change();

  void convierteCompositor();
  // Uploads `melodiasube` under the name.
  void subemelodia(const std::string& nombre);

  std::string melodiasube;  // the RTTTL text to be uploaded or played
  Drawing composerDrawing;
  Drawing rtttlDrawing;
  Check composerCheck;             // the count of notes beside the limit of 50
  phones::MelodyCheck rtttlCheck;  // beside txtrtttlsube

  Control phoneCard, melodyCard, resultCard;  // the way from here to the phone
  Control lbltitulocompo, lblporfacomprueba;
  Control lblnombremelodiasube, txtcomponombremelodia;
  Control lbltemposube, txtcompoTempo;
  Control lblformatocompo, txtmelodiacompo;
  Control composerCheckLabel, keyRow, composerView;
  Control lblMsg, cmdscuchacumpo, cmdsubecompo;
  Control lbltitulortttl, labelformatortttl, txtrtttlsube;
  Control rtttlCheckLabel, repairButton, undoRepairButton, rtttlView;
  Control saveComposed, saveRtttl, openButton;
  Control repairLabel, repairList, repairNotices, applyRepairButton, cancelRepairButton;
  Control cmdscuchartttl, cmdsubirmelortttl;
  Control newsTitle, newsList, newsTimer;
  Control rtf;  // the converted RTTTL notes; never shown

  static std::span<const ControlInfo> Rows();
  static Part Layout(bool wide);

 protected:
  // The text of the selected one of the server's newest melodies; "" after a message to the user.
  std::string NewestMelody();
  // Sets melodiasube to the composer's melody as RTTTL; false after a message to the user.
  bool BuildComposedMelody();
  // Puts a text into txtrtttlsube, which gets the focus; its old content can be restored.
  void EditRtttl(std::string text);
  const std::string& TypedRtttl() const { return txtrtttlsube.text; }
  // The check and the drawing of txtrtttlsube; what was proposed and mended stays.
  void CheckRtttlBox();
  nokia3210::CNokia& Converter();
  void RefreshStart();

 private:
  void SetRtttl(std::string text);

  std::vector<phones::RepairedMelody> repairs_;  // proposed; empty when nothing is
  std::string unrepaired_;                       // what the box held before; "" for nothing
  bool newsAsked_ = false, newsRuns_ = false;    // the request for the server's newest melodies
  SharedState& state_;
  std::unique_ptr<nokia3210::CNokia> converter_;  // created with the first visit to the page
};

}  // namespace tonadex::app
