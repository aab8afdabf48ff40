#include "prova_elenchi.h"

#include <QGroupBox>
#include <QRadioButton>

namespace
{

// Le lettere della barra, per le voci del menu; "T" in fondo se "Tabelle" si apre.
QString vociDelMenu(const fmTabella *tabella)
{
    QString stato;
    for (int i = 0; i < 5; ++i) {
        const QString lettera = QStringLiteral("SANGE").mid(i, 1);
        stato += tabella->menu().at(0)->actions().at(i)->isEnabled() ? lettera : lettera.toLower();
    }
    return stato + (tabella->menu().at(1)->isEnabled() ? u"T"_s : QString());
}

// La finestra dell'ambito come la si vede, accettata com'è.
QString ambitoProposto(const QWidget *finestra)
{
    QString mostrate;
    QString scelte;
    for (int i = 0; i < 4; ++i)
        mostrate += parte<QGroupBox>(finestra, u"Frame1_%1"_s.arg(i))->isVisible() ? u'm' : u'n';
    // I dettagli si vedono sempre, ma si scelgono solo dove cambiano qualcosa.
    if (!parte<QGroupBox>(finestra, u"Frame1_3"_s)->isEnabled())
        mostrate[3] = u's';
    for (int i = 0; i < 8; ++i) {
        if (parte<QRadioButton>(finestra, u"Option1_%1"_s.arg(i))->isChecked())
            scelte += QString::number(i);
    }
    const QString vista = u"%1 %2 %3"_s.arg(finestra->windowTitle(), mostrate, scelte);
    preme(finestra, u"Command1"_s);
    return vista;
}

} // namespace

class TstStatoElenchi : public QObject, private ProvaElenchi
{
    Q_OBJECT

private slots:
    void init() { comincia(); }
    void cleanup() { finisce(); }

    void statoDiOgniElenco_data()
    {
        QTest::addColumn<QStringList>("code");
        QTest::addColumn<QStringList>("barre");
        QTest::addColumn<QStringList>("menu");
        QTest::addColumn<QString>("dopo");
        // Pieno e vuoto, quando si lavora su A8, R8 e V8; poi pieno e vuoto, su nulla.
        const QString voce = u" Archivio A8 Registro R8 Voce V8"_s;
        QTest::newRow("Archivi") << QStringList{{}, {}, {}, {}}
                                 << QStringList{u"SANGE"_s, u"saNge"_s}
                                 << QStringList{u"SANGET"_s, u"SANGET"_s} << u"A1 R8 V8"_s;
        QTest::newRow("Registri") << QStringList{u" Archivio A8"_s, u" Archivio A8"_s, {}, {}}
                                  << QStringList{u"SANGE"_s, u"saNge"_s}
                                  << QStringList{u"SANGET"_s, u"SANGET"_s} << u"A8 R1 V8"_s;
        QTest::newRow("Voci") << QStringList{u" Archivio A8 Registro R8"_s,
                                             u" Archivio A8 Registro R8"_s,
                                             u" Archivio  Registro "_s,
                                             {}}
                              << QStringList{u"sANGE"_s, u"saNge"_s}
                              << QStringList{u"sANGET"_s, u"SANGET"_s} << u"A8 R8 V1"_s;
        for (const char *tabella : {"Individui", "Famiglie", "Eventi", "Binari"})
            QTest::newRow(tabella) << QStringList{voce, voce, u" Archivio "_s, {}}
                                   << QStringList{u"sAnGE"_s, u"sange"_s}
                                   << QStringList{u"sAnGE"_s, u"sAnGE"_s} << u"A8 R8 V8"_s;
    }
    void statoDiOgniElenco()
    {
        QFETCH(QStringList, code);
        QFETCH(QStringList, barre);
        QFETCH(QStringList, menu);
        QFETCH(QString, dopo);
        const QString nome = QString::fromUtf8(QTest::currentDataTag());
        for (int caso = 0; caso < 4; ++caso) {
            const bool vuoto = caso % 2 == 1;
            esempio(u"%1.tvd"_s.arg(caso));
            if (vuoto)
                esegui(u"DELETE FROM "_s + nome);
            if (caso < 2)
                lavoraSu(u"A8"_s, u"R8"_s, u"V8"_s);
            else
                lavoraSu({}, {}, {});
            const fmTabella *tabella = elenco(nome);
            QCOMPARE(tabella->windowTitle(),
                     nome + u" File "_s + contesto().PercorsoCorrente + code.at(caso));
            QCOMPARE(barra(tabella), barre.at(vuoto));
            QCOMPARE(vociDelMenu(tabella), menu.at(vuoto));
            if (caso < 2)
                QCOMPARE(correnti(), vuoto ? u"A8 R8 V8"_s : dopo);
        }
    }

    void ambitoPropostoDalMenuTabelle_data()
    {
        // Per ogni voce del menu dopo "Archivi": la didascalia, le quattro parti (m mostrata, n
        // nascosta, s spenta), le scelte fatte e l'ambito che ne viene.
        QTest::addColumn<QStringList>("attesi");
        QTest::newRow("Archivi") << QStringList{
            u"Registri in Archivi mnns 0246 0"_s,  u"Voci in Archivi mnns 0356 6"_s,
            u"Individui in Archivi mnnm 0356 6"_s, u"Famiglie in Archivi mnns 0356 6"_s,
            u"Eventi in Archivi mnns 0356 6"_s,    u"Binari in Archivi mnns 0356 6"_s};
        QTest::newRow("Registri") << QStringList{
            u"Registri in Registri mnns 0246 0"_s,  u"Voci in Registri mmns 0246 0"_s,
            u"Individui in Registri mmnm 0256 4"_s, u"Famiglie in Registri mmns 0256 4"_s,
            u"Eventi in Registri mmns 0256 4"_s,    u"Binari in Registri mmns 0256 4"_s};
        QTest::newRow("Voci") << QStringList{
            u"Registri in Voci mnns 0246 0"_s,  u"Voci in Voci mmns 0246 0"_s,
            u"Individui in Voci mmmm 0246 0"_s, u"Famiglie in Voci mmms 0246 0"_s,
            u"Eventi in Voci mmms 0246 0"_s,    u"Binari in Voci mmms 0246 0"_s};
    }
    void ambitoPropostoDalMenuTabelle()
    {
        QFETCH(QStringList, attesi);
        esempio();
        fmTabella *da = elenco(QString::fromUtf8(QTest::currentDataTag()));
        da->proprieta.ArchivioLocale = u"A2"_s;
        da->proprieta.RegistroLocale = u"R2"_s;
        da->proprieta.VoceLocale = u"V2"_s;
        contesto().VoceCorrente = u"V3"_s;
        QStringList trovati;
        for (int voce = 2; voce <= 7; ++voce) {
            QString vista;
            persona->poi([&](QWidget *finestra) { vista = ambitoProposto(finestra); });
            tabelle(da, voce);
            const ProprietaTabella &nuova = ultimo()->proprieta;
            trovati.append(u"%1 %2"_s.arg(vista).arg(nuova.Ordinamento));
            QCOMPARE(vista.section(u' ', 0, 0), nuova.TipoTabella);
            if (voce > 3)
                QCOMPARE(nuova.ArchivioLocale + nuova.RegistroLocale + nuova.VoceLocale,
                         u"A2R2V2"_s);
            QCOMPARE(nuova.VoceLocaleTabella, u"V3"_s);
            QCOMPARE(contesto().AmbitoScelto, 0);
            // L'elenco nuovo può avere fatto sua la voce corrente.
            contesto().VoceCorrente = u"V3"_s;
        }
        QCOMPARE(trovati, attesi);
        // "Archivi" non chiede nulla.
        tabelle(da, 1);
        QCOMPARE(codici(ultimo()), u"A1 A2"_s);
    }

    // Il segno dell'ordine non va su una colonna che non ordina.
    void segnoDellOrdine()
    {
        esempio();
        esegui(u"UPDATE Binari SET Nome = 'è' WHERE Codice = 'B1'"_s);
        const fmTabella *oggetti = elenco(u"Binari"_s);
        const QHeaderView *testata = griglia(oggetti)->horizontalHeader();
        // I contenuti si ordinano per il loro principio, i file prima dei testi.
        esegui(u"INSERT INTO Binari VALUES ('B3', 13, 'V1', 'z', 'Addì 4 marzo')"_s);
        sceglie(u"&Binari"_s, u"Aggiorna"_s);
        ordina(oggetti, 4);
        QCOMPARE(codici(oggetti), u"B2 B3 B1"_s);
        ordina(oggetti, 3);
        QVERIFY(testata->isSortIndicatorShown());
        QCOMPARE(testata->sortIndicatorSection(), 3);
        QCOMPARE(testata->sortIndicatorOrder(), Qt::AscendingOrder);
        QCOMPARE(codici(oggetti), u"B2 B1 B3"_s);
        // Dal menu della riga si ordina senza il mouse, per le stesse colonne.
        attiva();
        QTest::keyClick(griglia(oggetti), Qt::Key_F10, Qt::ShiftModifier);
        auto *aperto = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(aperto != nullptr);
        const auto colonne = aperto->actions().constLast()->menu()->actions();
        QCOMPARE(didascalie(colonne), QStringList({u"Codice"_s, u"Tipo"_s, u"IdProprietario"_s,
                                                   u"Nome"_s, u"Campolungo"_s}));
        QVERIFY(colonne.at(3)->isChecked());
        colonne.constFirst()->trigger();
        aperto->close();
        QCOMPARE(codici(oggetti), u"B1 B2 B3"_s);
    }

    void mostra()
    {
        const fmTabella *primo = apreEsempio(u"Bianchi & Figli.tvd"_s);
        elenco(u"Registri"_s);
        // La stessa didascalia: si dice che cosa abbracciano, e poi quale viene prima.
        comando(primo, 1);
        comando(primo, 1);
        cornice(primo)->showMinimized();
        area()->setActiveSubWindow(cornice(ultimo()));
        const QString inizio = u" File "_s + percorso(u"Bianchi && Figli.tvd"_s);
        QStringList elencate;
        scegliePrima(elencate);
        sceglie(u"&Finestre"_s, u"Mostra"_s);
        QCOMPARE(
            elencate,
            QStringList({u"Archivi"_s + inizio, u"Registri"_s + inizio + u" Archivio A1 – tutto"_s,
                         u"Registri"_s + inizio + u" Archivio A1 – archivio A1 (1)"_s,
                         u"* Registri"_s + inizio + u" Archivio A1 – archivio A1 (2)"_s}));
        QTRY_COMPARE(area()->activeSubWindow(), cornice(primo));
        QVERIFY(!cornice(primo)->isMinimized());
    }

private:
    // Dal menu che sta per aprirsi sceglie la prima voce, e dice quali erano ("*" la spuntata).
    void scegliePrima(QStringList &elencate)
    {
        QTimer::singleShot(1, this, [this, &elencate] {
            auto *aperto = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            if (aperto == nullptr)
                return scegliePrima(elencate);
            for (const QAction *azione : aperto->actions())
                elencate.append((azione->isChecked() ? u"* "_s : QString()) + azione->text());
            QTest::mouseClick(aperto, Qt::LeftButton, {},
                              aperto->actionGeometry(aperto->actions().constFirst()).center());
        });
    }
};

PROVA_CON_FINESTRE(TstStatoElenchi)

#include "tst_stato_elenchi.moc"
