#include "app/avvio.h"

#include "app/fmGuida.h"
#include "app/stile.h"
#include "editors/editori.h"

#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

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
    registraEditori();
    installaTastoGuida(applicazione);
}
