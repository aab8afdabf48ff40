#include "app/stile.h"

#include <QApplication>
#include <QEvent>
#include <QFontMetrics>
#include <QLabel>
#include <QPainter>
#include <QPlainTextEdit>
#include <QStyleOption>

namespace
{

// L'altezza del carattere per cui gli stili sono disegnati.
constexpr double altezzaUsuale = 17.0;
// Quanto un bottone è largo almeno, e quanto più della sua scritta, a quell'altezza.
constexpr double larghezzaBottone = 80.0;
constexpr double margineBottone = 24.0;

double ingrandimento()
{
    return qMax(1.0, QFontMetrics(QApplication::font()).height() / altezzaUsuale);
}

// Il fondo di un testo lungo non lo dipinge lo stile: si cambia da dove viene.
void mostraSolaLettura(QPlainTextEdit *testo)
{
    testo->viewport()->setBackgroundRole(testo->isReadOnly() ? QPalette::Window : QPalette::Base);
}

} // namespace

// Un'etichetta del toolkit indovina dal testo se è formattato: il nome di un archivio o di un file,
// anche in un suggerimento o in una finestra del toolkit stesso, potrebbe chiederle un'immagine.
void Stile::polish(QWidget *finestra)
{
    auto *etichetta = qobject_cast<QLabel *>(finestra);
    if (etichetta != nullptr && etichetta->textFormat() == Qt::AutoText)
        etichetta->setTextFormat(Qt::PlainText);
    if (auto *testo = qobject_cast<QPlainTextEdit *>(finestra)) {
        testo->installEventFilter(this);
        mostraSolaLettura(testo);
    }
    QProxyStyle::polish(finestra);
}

int Stile::pixelMetric(PixelMetric misura, const QStyleOption *opzione,
                       const QWidget *finestra) const
{
    const int sua = QProxyStyle::pixelMetric(misura, opzione, finestra);
    switch (misura) {
    case PM_LayoutHorizontalSpacing:
    case PM_LayoutVerticalSpacing:
    case PM_LayoutLeftMargin:
    case PM_LayoutTopMargin:
    case PM_LayoutRightMargin:
    case PM_LayoutBottomMargin:
    case PM_SmallIconSize:
    case PM_ButtonIconSize:
    case PM_ListViewIconSize:
    case PM_ToolBarIconSize:
    case PM_TitleBarHeight:
    case PM_TitleBarButtonIconSize:
    case PM_TitleBarButtonSize:
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
    case PM_RadioButtonLabelSpacing:
    case PM_ScrollBarExtent:
        // Negativo vuol dire che lo stile decide secondo ciò che sta accanto.
        return sua < 0 ? sua : qRound(sua * ingrandimento());
    default:
        return sua;
    }
}

// Un clic sceglie e due aprono, anche dove il desktop aprirebbe col primo: la riga scelta serve a
// "Seleziona" e a "Elimina".
int Stile::styleHint(StyleHint cenno, const QStyleOption *opzione, const QWidget *finestra,
                     QStyleHintReturn *altro) const
{
    return cenno == SH_ItemView_ActivateItemOnSingleClick
               ? 0
               : QProxyStyle::styleHint(cenno, opzione, finestra, altro);
}

// Il margine di un bottone attorno alla sua scritta cresce come lei.
QSize Stile::sizeFromContents(ContentsType contenuto, const QStyleOption *opzione,
                              const QSize &misure, const QWidget *finestra) const
{
    QSize sue = QProxyStyle::sizeFromContents(contenuto, opzione, misure, finestra);
    if (contenuto == CT_PushButton) {
        const int minima = qRound(larghezzaBottone * ingrandimento());
        const int margine = qRound(margineBottone * ingrandimento());
        sue.setWidth(qMax(sue.width(), qMax(minima, misure.width() + margine)));
    }
    return sue;
}

void Stile::drawPrimitive(PrimitiveElement pezzo, const QStyleOption *opzione, QPainter *pittore,
                          const QWidget *finestra) const
{
    const auto *casella = qstyleoption_cast<const QStyleOptionFrame *>(opzione);
    if (pezzo != PE_PanelLineEdit || casella == nullptr || !(casella->state & State_ReadOnly))
        return QProxyStyle::drawPrimitive(pezzo, opzione, pittore, finestra);
    QStyleOptionFrame sola(*casella);
    sola.palette.setBrush(QPalette::Base, sola.palette.window());
    QProxyStyle::drawPrimitive(pezzo, &sola, pittore, finestra);
}

bool Stile::eventFilter(QObject *oggetto, QEvent *evento)
{
    if (evento->type() == QEvent::ReadOnlyChange)
        mostraSolaLettura(qobject_cast<QPlainTextEdit *>(oggetto));
    return QProxyStyle::eventFilter(oggetto, evento);
}

// Un'icona scelta resta dei suoi colori, su un fondo che la stacca da quello della scelta.
QPixmap Stile::generatedIconPixmap(QIcon::Mode modo, const QPixmap &icona,
                                   const QStyleOption *opzione) const
{
    if (modo != QIcon::Selected)
        return QProxyStyle::generatedIconPixmap(modo, icona, opzione);
    QPixmap scelta(icona.size());
    scelta.setDevicePixelRatio(icona.devicePixelRatio());
    scelta.fill(Qt::transparent);
    QColor fondo = opzione->palette.color(QPalette::HighlightedText);
    fondo.setAlpha(200);
    const QRectF tutto(QPointF(), icona.deviceIndependentSize());
    QPainter pittore(&scelta);
    pittore.setRenderHint(QPainter::Antialiasing);
    pittore.setPen(Qt::NoPen);
    pittore.setBrush(fondo);
    pittore.drawRoundedRect(tutto, tutto.height() / 6, tutto.height() / 6);
    pittore.drawPixmap(QPointF(), icona);
    return scelta;
}
