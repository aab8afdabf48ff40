#include "db/formule/formulario.h"

#include <QTest>

using namespace modTarvola;
using formule::Caselle;
using formule::Formulario;

namespace
{

scheda::Indirizzo di(const char *posto, const char *campo, int evento = 0)
{
    return {QString::fromUtf8(posto), 0, evento, QString::fromUtf8(campo)};
}

Caselle caselle(const char *data, const char *nome, const char *sesso, const char *padre)
{
    return {{di("voce", "Data"), QString::fromUtf8(data)},
            {di("battezzato", "Nome"), QString::fromUtf8(nome)},
            {di("battezzato", "Sesso"), QString::fromUtf8(sesso)},
            {di("padre", "Nome"), QString::fromUtf8(padre)}};
}

// Un registro di quattro atti in italiano.
Formulario italiano()
{
    Formulario formulario;
    const auto impara = [&](const char *data, const char *nome, const char *sesso,
                            const char *padre, const char *testo) {
        formulario.impara(caselle(data, nome, sesso, padre), QString::fromUtf8(testo));
    };
    impara("1835-01-11", "Rosa", "F", "Luca",
           "Addì undici Gennaio mille ottocento trentacinque fu battezzata Rosa figlia di Luca.");
    impara("1835-02-03", "Marco", "M", "Piero",
           "Addì tre Febbraio mille ottocento trentacinque fu battezzato Marco figlio di Piero.");
    impara("1835-02-27", "Lena", "F", "Carlo",
           "Addì ventisette Febbraio mille ottocento trentacinque fu battezzata Lena figlia di "
           "Carlo.");
    impara("1835-03-06", "Bruno", "M", "Elia",
           "Addì sei Marzo mille ottocento trentacinque fu battezzato Bruno figlio di Elia.");
    return formulario;
}

} // namespace

class tst_formule : public QObject
{
    Q_OBJECT

private slots:
    // Una data mai vista in lettere, e le desinenze di chi è battezzato.
    void dataEDesinenze()
    {
        const Formulario formulario = italiano();
        const QString maschio = QStringLiteral("Addì dodici Agosto mille ottocento trentasei fu "
                                               "battezzato Ugo figlio di Remo.");
        const QString femmina = QStringLiteral("Addì dodici Agosto mille ottocento trentasei fu "
                                               "battezzata Ada figlia di Remo.");
        for (const QString &tutto : {maschio, femmina}) {
            const bool m = tutto == maschio;
            const Caselle sue = caselle("1836-08-12", m ? "Ugo" : "Ada", m ? "M" : "F", "Remo");
            QString scritto = QStringLiteral("Addì ");
            for (int i = 0; i < 40 && scritto.size() < tutto.size(); ++i) {
                const auto seguito = formulario.seguito(sue, scritto);
                QVERIFY2(seguito.tratto > 0, qPrintable(scritto));
                QVERIFY2(tutto.startsWith(scritto + seguito.testo.first(seguito.tratto)),
                         qPrintable(scritto + u'|' + seguito.testo));
                QVERIFY(seguito.parola > 0 && seguito.tratto <= seguito.testo.size());
                scritto += seguito.testo.first(seguito.tratto);
            }
            QCOMPARE(scritto, tutto);
        }
    }

    // Ciò che non comincia come ciò che è scritto non si propone; e dove nulla si ripete, nulla.
    void nullaDiFalso()
    {
        const Formulario formulario = italiano();
        const Caselle sue = caselle("1836-08-12", "Ugo", "M", "Remo");
        QVERIFY(formulario.seguito(sue, QStringLiteral("Addì do"))
                    .testo.startsWith(QStringLiteral("dici Agosto")));
        QVERIFY(formulario.seguito(sue, QStringLiteral("Addì dod"))
                    .testo.startsWith(QStringLiteral("ici Agosto")));
        QCOMPARE(formulario.seguito(sue, QStringLiteral("Addì x")).testo, QString());
        Formulario altro;
        altro.impara(sue, QStringLiteral("Nevicò tre giorni e il prete non venne."));
        altro.impara(sue, QStringLiteral("Chi passa di qui guardi la strada."));
        QCOMPARE(altro.seguito(sue, QStringLiteral("Quando il fiume")).testo, QString());
        QCOMPARE(Formulario().seguito(sue, QString()).testo, QString());
    }
};

QTEST_GUILESS_MAIN(tst_formule)
#include "tst_formule.moc"
