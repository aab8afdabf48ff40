#pragma once

#include <QProxyStyle>

// Lo stile del desktop, con spazi, icone e segni che crescono col carattere e ogni etichetta senza
// formato.
class Stile : public QProxyStyle
{
    Q_OBJECT

public:
    using QProxyStyle::polish;
    using QProxyStyle::QProxyStyle;

    void polish(QWidget *finestra) override;
    int pixelMetric(PixelMetric misura, const QStyleOption *opzione,
                    const QWidget *finestra) const override;
    int styleHint(StyleHint cenno, const QStyleOption *opzione, const QWidget *finestra,
                  QStyleHintReturn *altro) const override;
    QSize sizeFromContents(ContentsType contenuto, const QStyleOption *opzione, const QSize &misure,
                           const QWidget *finestra) const override;
    // Ciò che si può solo leggere ha il fondo della finestra, non quello in cui si scrive.
    void drawPrimitive(PrimitiveElement pezzo, const QStyleOption *opzione, QPainter *pittore,
                       const QWidget *finestra) const override;
    bool eventFilter(QObject *oggetto, QEvent *evento) override;
    QPixmap generatedIconPixmap(QIcon::Mode modo, const QPixmap &icona,
                                const QStyleOption *opzione) const override;
};
