#include "shell/qt/window/pages.h"

#include <QBoxLayout>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QSlider>
#include <QToolButton>

#include "app/words.h"
#include "shell/qt/text.h"
#include "shell/qt/theme/icons.h"
#include "shell/qt/theme/theme.h"
#include "shell/qt/widgets/key_row.h"
#include "shell/qt/widgets/melody_view.h"
#include "shell/qt/widgets/phone_display.h"

namespace tonadex::shell {
namespace {

namespace words = app::words;
using app::Form1;

constexpr int kWidestCard = 860;
constexpr int kNoticesHeight = 112;

QBoxLayout* Box(QBoxLayout::Direction direction, int spacing) {
  auto* box = new QBoxLayout(direction);
  box->setContentsMargins(0, 0, 0, 0);
  box->setSpacing(spacing);
  return box;
}
QBoxLayout* Row(int spacing = kGrid) {
  return Box(QBoxLayout::LeftToRight, spacing);
}
QBoxLayout* Column(int spacing = kGrid) {
  return Box(QBoxLayout::TopToBottom, spacing);
}

QLabel* MutedLabel(const QString& text = {}) {
  auto* label = new QLabel(text);
  label->setProperty("muted", true);
  label->setWordWrap(true);
  label->setTextFormat(Qt::PlainText);
  return label;
}

// A picture in the colours of the theme that stands.
class PictureLabel : public QLabel {
 public:
  explicit PictureLabel(const QString& name) : picture_(ThemedIcon(name)) { Draw(); }

 protected:
  void changeEvent(QEvent* event) override {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
      Draw();
    }
  }

 private:
  void Draw() { setPixmap(picture_.pixmap(32, 32)); }
  QIcon picture_;
};

QPushButton* CommandButton(std::string_view words, const char* icon) {
  auto* button = new QPushButton(ToQString(words));
  button->setIcon(ThemedIcon(QLatin1String(icon)));
  button->setIconSize(IconSize());
  return button;
}

// Builds the window from top to bottom; each function lays out one part of it.
class Layouter {
 public:
  Layouter(Binding& binding, QWidget* window) : binding_(binding), window_(window) {}

  PageParts Run() {
    auto* all = new QVBoxLayout(window_);
    all->setContentsMargins(0, 0, 0, 0);
    all->setSpacing(0);
    all->addWidget(NavigationBar());
    all->addWidget(Banner());
    all->addWidget(ListPage(), 1);
    all->addWidget(WebPage(), 1);
    all->addWidget(OptionsPage(), 1);
    all->addWidget(StartPage(), 1);
    return parts_;
  }

 private:
  QWidget* Of(app::Control Form1::*member) const { return binding_.Widget(member); }

  QLabel* LabelOf(app::Control Form1::*member) const {
    return qobject_cast<QLabel*>(binding_.Widget(member));
  }

  QWidget* Group(QLayout* layout, QWidget* widget = new QWidget) {
    widget->setLayout(layout);
    parts_.groups << widget;
    return widget;
  }

  // A label above its field; its mnemonic leads there.
  QBoxLayout* Field(app::Control Form1::*label, QWidget* field) {
    auto* column = Column(kFieldGap);
    LabelOf(label)->setBuddy(field);
    column->addWidget(LabelOf(label));
    column->addWidget(field);
    return column;
  }

  QWidget* Scrolled(QLayout* layout) {
    auto* inner = new QWidget;
    inner->setLayout(layout);
    auto* area = new QScrollArea;
    area->setWidgetResizable(true);
    area->setFocusPolicy(Qt::NoFocus);
    area->setWidget(inner);
    area->viewport()->setAutoFillBackground(false);
    inner->setAutoFillBackground(false);
    parts_.groups << area;
    return area;
  }

  QWidget* NavigationBar() {
    auto* bar = new QWidget;
    bar->setProperty("bar", true);
    bar->setAttribute(Qt::WA_StyledBackground);
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(kGrid, 0, kGrid, 0);
    row->setSpacing(kFieldGap);
    for (const app::NavigationInfo& info : app::NavigationRow()) {
      if (info.button != &Form1::cmdayuda) {
        row->addWidget(Of(info.button));
      }
    }
    row->addStretch(1);
    parts_.phone = new QToolButton;
    parts_.phone->setProperty("nav", true);
    parts_.phone->setIcon(ThemedIcon(QStringLiteral("movil")));
    parts_.phone->setIconSize(IconSize());
    parts_.phone->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    parts_.phone->setFont(CurrentTheme().small);
    parts_.phone->setFocusPolicy(Qt::StrongFocus);
    row->addWidget(parts_.phone);
    row->addWidget(Of(&Form1::cmdayuda));
    return bar;
  }

  QWidget* Banner() {
    auto* row = Row();
    row->setContentsMargins(kPageMargin, kGrid, kPageMargin, 0);
    Of(&Form1::navbanner)->setFixedHeight(kBannerHeight);
    row->addWidget(Of(&Form1::navbanner), 1);
    return Group(row);
  }

  QWidget* WebPage() {
    auto* column = Column();
    column->addWidget(Of(&Form1::WebBrowser1));
    return Group(column);
  }

  QWidget* ListPage() {
    auto* row = Row(kPageMargin);
    row->setContentsMargins(kPageMargin, kGrid, kPageMargin, kPageMargin);
    parts_.listColumn = ListColumn();
    parts_.resultColumn = ResultColumn();
    row->addWidget(parts_.listColumn, 1);
    row->addWidget(parts_.resultColumn, 1);
    return Group(row);
  }

  QWidget* ListColumn() {
    auto* search = Row();
    search->addWidget(Of(&Form1::txtbuscar), 1);
    search->addWidget(Of(&Form1::picabuscar));
    search->addWidget(Of(&Form1::picazar));
    auto* head = Column();
    head->addLayout(search);
    auto* get = Row();
    get->addStretch(1);
    get->addWidget(Of(&Form1::picdescargar));

    parts_.goToSearch = CommandButton(words::kGoToSearch, "buscar");
    auto* column = Column();
    column->addWidget(Group(head));
    column->addWidget(Of(&Form1::List1), 1);
    column->addWidget(parts_.goToSearch);
    column->addWidget(Group(get));
    return Group(column);
  }

  // Above the notices: their label and, at the right, the tempo.
  QBoxLayout* NoticesHead() {
    Of(&Form1::texttempo)->setFixedWidth(64);
    LabelOf(&Form1::Label1)->setBuddy(Of(&Form1::texttempo));
    LabelOf(&Form1::Label1)->setWordWrap(false);
    auto* beats = MutedLabel(ToQString(words::kBeatsPerMinute));
    beats->setWordWrap(false);
    auto* row = Row();
    row->addWidget(LabelOf(&Form1::Label2), 1);
    row->addWidget(LabelOf(&Form1::Label1));
    row->addWidget(Of(&Form1::texttempo));
    row->addWidget(beats);
    return row;
  }

  QBoxLayout* DisplayFoot() {
    parts_.copy = CommandButton(words::kCopy, "copiar");
    parts_.saveAs = CommandButton(words::kSaveAs, "guardar");
    parts_.size = new QSlider(Qt::Horizontal);
    parts_.size->setRange(PhoneDisplay::kSmallestPixels, PhoneDisplay::kLargestPixels);
    parts_.size->setValue(parts_.display->PixelSize());
    parts_.size->setPageStep(4);
    parts_.size->setFixedWidth(120);
    parts_.size->setAccessibleName(ToQString(words::kTextSize));
    parts_.size->setToolTip(ToQString(words::kTextSize));
    QObject::connect(parts_.size, &QSlider::valueChanged, parts_.display,
                     &PhoneDisplay::SetPixelSize);
    QObject::connect(parts_.display, &PhoneDisplay::PixelSizeChanged, parts_.size,
                     &QSlider::setValue);
    auto* small = MutedLabel(QStringLiteral("A"));
    auto* large = MutedLabel(QStringLiteral("A"));
    small->setFont(CurrentTheme().small);
    large->setFont(CurrentTheme().title);
    auto* row = Row();
    row->addWidget(parts_.copy);
    row->addWidget(parts_.saveAs);
    row->addStretch(1);
    row->addWidget(small);
    row->addWidget(parts_.size);
    row->addWidget(large);
    return row;
  }

  QWidget* ResultColumn() {
    LabelOf(&Form1::lbltextresult)->setFont(CurrentTheme().heading);
    auto* commands = Row();
    commands->addWidget(Of(&Form1::picreproducir));
    commands->addWidget(Of(&Form1::picconvertir));
    commands->addWidget(Of(&Form1::picimprimir));
    commands->addStretch(1);
    parts_.repertoireView = new MelodyView;
    parts_.display = qobject_cast<PhoneDisplay*>(Of(&Form1::textresultado));
    parts_.display->setMinimumHeight(80);
    Of(&Form1::Textavisos)->setMaximumHeight(kNoticesHeight);
    Of(&Form1::Textavisos)->setMinimumHeight(kNoticesHeight / 2);
    LabelOf(&Form1::Label2)->setBuddy(Of(&Form1::Textavisos));
    auto* column = Column();
    column->addLayout(commands);
    column->addWidget(LabelOf(&Form1::lbltextresult));
    column->addWidget(parts_.repertoireView, 3);
    column->addWidget(parts_.display, 5);
    column->addLayout(DisplayFoot());
    column->addLayout(NoticesHead());
    column->addWidget(Of(&Form1::Textavisos), 3);
    return Scrolled(column);  // large letters may need more than the window has
  }

  QWidget* OptionsPage() {
    auto* lists = Row(kPageMargin);
    lists->addLayout(Field(&Form1::Label3, Of(&Form1::cmbmarcas)), 2);
    lists->addLayout(Field(&Form1::Label4, Of(&Form1::cmbformatos)), 3);
    auto* title = new QLabel(ToQString(words::kChoosePhone));
    title->setFont(CurrentTheme().title);
    parts_.optionsSentence = new QLabel;
    parts_.optionsSentence->setWordWrap(true);
    auto* gets = Row();
    parts_.optionsPicture = new PictureLabel(QStringLiteral("movil"));
    gets->addWidget(parts_.optionsPicture);
    gets->addWidget(parts_.optionsSentence, 1);

    auto* column = Column(kPageMargin);
    column->setContentsMargins(3 * kGrid, 2 * kGrid, 3 * kGrid, 2 * kGrid);
    column->addWidget(title);
    column->addLayout(lists, 1);
    column->addLayout(gets);
    auto* card = new QFrame;
    card->setProperty("card", true);
    card->setMaximumSize(kWidestCard, 12 * CurrentTheme().controlHeight);
    card->setLayout(column);

    auto* centred = Row();
    centred->setContentsMargins(kPageMargin, kPageMargin, kPageMargin, kPageMargin);
    centred->addStretch(1);
    centred->addWidget(card, 1000);
    centred->addStretch(1);
    auto* page = Column();
    page->addLayout(centred, 1000);
    page->addStretch(1);
    return Group(page);
  }

  QFrame* Card(QBoxLayout* column) {
    column->setContentsMargins(kCardPadding, kCardPadding, kCardPadding, kCardPadding);
    auto* card = new QFrame;
    card->setProperty("card", true);
    card->setLayout(column);
    return card;
  }

  // The two buttons at the foot of a card, beside what it has to say.
  QBoxLayout* Actions(app::Control Form1::*listen, app::Control Form1::*upload, QWidget* words) {
    auto* row = Row();
    row->addWidget(words, 1);
    row->addWidget(Of(listen));
    row->addWidget(Of(upload));
    return row;
  }

  // A box for notes, its label above.
  QBoxLayout* Notes(app::Control Form1::*label, app::Control Form1::*box) {
    Of(box)->setMinimumHeight(QFontMetrics(CurrentTheme().mono).lineSpacing() * 2 + 2 * kGrid);
    Of(box)->setFont(CurrentTheme().mono);
    return Field(label, Of(box));
  }

  QWidget* ComposerCard() {
    LabelOf(&Form1::lbltitulocompo)->setFont(CurrentTheme().title);
    LabelOf(&Form1::lblporfacomprueba)->setProperty("muted", true);
    LabelOf(&Form1::lblMsg)->setProperty("tone", "bad");
    Of(&Form1::txtcompoTempo)->setFixedWidth(96);
    parts_.keys = new KeyRow;
    parts_.composerView = new MelodyView;
    parts_.composerCheck = MutedLabel();

    auto* title = Row(kPageMargin);
    title->addWidget(LabelOf(&Form1::lbltitulocompo));
    title->addWidget(LabelOf(&Form1::lblporfacomprueba), 1);
    LabelOf(&Form1::lblporfacomprueba)->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    LabelOf(&Form1::lblporfacomprueba)->setFont(CurrentTheme().small);
    auto* head = Row(kPageMargin);
    head->addLayout(Field(&Form1::lblnombremelodiasube, Of(&Form1::txtcomponombremelodia)), 1);
    head->addLayout(Field(&Form1::lbltemposube, Of(&Form1::txtcompoTempo)));
    auto* column = Column();
    column->addLayout(title);
    column->addLayout(head);
    column->addLayout(Notes(&Form1::lblformatocompo, &Form1::txtmelodiacompo), 2);
    column->addWidget(parts_.composerCheck);
    column->addWidget(parts_.keys);
    column->addWidget(parts_.composerView, 3);
    column->addLayout(
        Actions(&Form1::cmdscuchacumpo, &Form1::cmdsubecompo, LabelOf(&Form1::lblMsg)));
    return Card(column);
  }

  QWidget* RtttlCard() {
    LabelOf(&Form1::lbltitulortttl)->setFont(CurrentTheme().title);
    parts_.rtttlView = new MelodyView;
    parts_.rtttlCheck = MutedLabel();
    auto* column = Column();
    column->addWidget(LabelOf(&Form1::lbltitulortttl));
    column->addLayout(Notes(&Form1::labelformatortttl, &Form1::txtrtttlsube), 2);
    column->addWidget(parts_.rtttlCheck);
    column->addWidget(parts_.rtttlView, 3);
    column->addLayout(Actions(&Form1::cmdscuchartttl, &Form1::cmdsubirmelortttl, new QWidget));
    return Card(column);
  }

  QWidget* StartPage() {
    auto* row = Row(kPageMargin);
    row->setContentsMargins(kPageMargin, kGrid, kPageMargin, kPageMargin);
    row->addWidget(ComposerCard(), 5);
    row->addWidget(RtttlCard(), 3);
    return Scrolled(row);
  }

  Binding& binding_;
  QWidget* window_;
  PageParts parts_;
};

}  // namespace

std::array<MelodyPart, 3> PageParts::Melodies() const {
  return {{{app::Sounding::kRepertoire, &Form1::repertoireDrawing, repertoireView},
           {app::Sounding::kComposer, &Form1::composerDrawing, composerView},
           {app::Sounding::kRtttl, &Form1::rtttlDrawing, rtttlView}}};
}

PageParts LayOut(Binding& binding, QWidget* window) {
  return Layouter(binding, window).Run();
}

}  // namespace tonadex::shell
