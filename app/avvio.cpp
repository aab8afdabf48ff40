#include "app/avvio.h"

#include "app/fmGuida.h"
#include "app/stile.h"
#include "editors/editori.h"

#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace
{

// Il tasto che il toolkit chiama anche in italiano "Shift" ha un nome suo.
class NomiDeiTasti : public QTranslator
{
public:
    using QTranslator::QTranslator;

    bool isEmpty() const override { return false; }
    QString translate(const char *contesto, const char *testo, const char * /*distinzione*/,
                      int /*quanti*/) const override
    {
        return qstrcmp(contesto, "QShortcut") == 0 && qstrcmp(testo, "Shift") == 0
                   ? QStringLiteral("Maiusc")
                   : QString();
    }
};

} // namespace

// Le risorse di una libreria statica vanno chieste per nome, fuori da ogni spazio dei nomi.
static void caricaIcone()
{
    Q_INIT_RESOURCE(icone);
}

void preparaApplicazione(QApplication &applicazione)
{
    caricaIcone();
    QApplication::setStyle(new Stile);
    QApplication::setApplicationName(QStringLiteral("Tarvola"));
    QApplication::setApplicationVersion(QStringLiteral(TARVOLA_VERSIONE));
    QApplication::setDesktopFileName(QStringLiteral("tarvola"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icone/tarvola.svg")));
    // Le finestre sono in italiano qualunque sia la lingua del sistema: anche quelle del toolkit.
    QLocale::setDefault(QLocale(QLocale::Italian, QLocale::Italy));
    auto *traduzioni = new QTranslator(&applicazione);
    if (traduzioni->load(QStringLiteral("qtbase_it"),
                         QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(traduzioni);
    QApplication::installTranslator(new NomiDeiTasti(&applicazione));
    registraEditori();
    installaTastoGuida(applicazione);
}
