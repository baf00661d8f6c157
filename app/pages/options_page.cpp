#include "app/pages/options_page.h"

#include <array>
#include <string>
#include <vector>

#include "app/form1.h"
#include "app/layout.h"
#include "app/settings.h"
#include "app/words.h"
#include "core/windows1252.h"
#include "phones/catalogue.h"
#include "phones/phone_description.h"

namespace tonadex::app {
namespace {

using namespace core::literals;
using F = Form1;

constexpr int kWidestCard = 860, kTallestCard = 432;

constexpr auto kRows = std::to_array<ControlInfo>({
    Words("optionsTitle", &F::optionsTitle, words::kChoosePhone, Font::kHeading),
    Label("Label3", &F::Label3, "&Marca", &F::cmbmarcas),
    Row(Look::kList, "cmbmarcas", &F::cmbmarcas, u8"Marca del móvil"_w,
        {Event::kClick, &F::cmbmarcas_Click}),
    Label("Label4", &F::Label4, "Mo&delo o formato", &F::cmbformatos),
    Row(Look::kList, "cmbformatos", &F::cmbformatos, "Modelo o formato"),
    Row(Look::kPicture, "optionsPicture", &F::optionsPicture, "", {}, {}, "", "movil"),
    Words("optionsSentence", &F::optionsSentence, ""),
});

}  // namespace

std::span<const ControlInfo> OptionsPage::Rows() {
  return kRows;
}

Part OptionsPage::Layout() {
  using look::kGrid, look::kPageMargin;
  Part card = Card({
                       The(&F::optionsTitle),
                       Row({Field(&F::Label3, The(&F::cmbmarcas).Weight(2)),
                            Field(&F::Label4, The(&F::cmbformatos).Weight(3))})
                           .Gap(kPageMargin)
                           .Weight(1),
                       Row({The(&F::optionsPicture), The(&F::optionsSentence).Weight(1)}),
                   })
                  .Gap(kPageMargin)
                  .Margins(3 * kGrid, 2 * kGrid, 2 * kGrid)
                  .Weight(1000)
                  .Widths(0, kWidestCard);
  return Column({Row({Stretch(), std::move(card), Stretch()})
                     .Margins(kPageMargin, 0, 0)
                     .Weight(1000)
                     .Heights(0, kTallestCard),
                 Stretch()})
      .Margins(0, kPageMargin, kPageMargin);
}

void OptionsPage::RefreshOptions() {
  optionsSentence.caption = phones::PhoneGets(cmbformatos.text);
}

void OptionsPage::SaveModel() {
  Program& program = state_.program;
  program.gPhoneModel = cmbformatos.text;
  RegWriteString(program.services.registry, kHkeyClassesRoot, kSettingKey, kModelSetting,
                 program.gPhoneModel);
}

void OptionsPage::FillModelList() {
  cmbformatos.Clear();
  for (const std::string_view model :
       phones::ModelsOfBrand(state_.program.PhoneCatalogue, cmbmarcas.SelectedText())) {
    cmbformatos.AddRow(model);
  }
  cmbformatos.Select(0);
}

void OptionsPage::cmbmarcas_Click() {
  FillModelList();
}

void OptionsPage::RestoreSavedModel() {
  std::vector<std::string> brands;
  state_.program.PhoneCatalogue = phones::LoadPhoneCatalogue(brands);
  cmbmarcas.Clear();
  for (const std::string& brand : brands) {
    cmbmarcas.AddRow(brand);
  }
  cmbmarcas.Select(0);
  FillModelList();
  state_.program.services.shell.DoEvents();
  const std::string saved = state_.program.gPhoneModel;
  if (const auto brand = phones::RestoredBrand(saved)) {
    cmbmarcas.Select(static_cast<int>(*brand));
    FillModelList();
  }
  if (!saved.empty()) {
    cmbformatos.SetText(saved);
  }
}

}  // namespace tonadex::app
