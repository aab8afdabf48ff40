#include "editors/fmRegistro.h"

#include "contesto/contesto.h"
#include "db/connessioni.h"
#include "editors/icone_generi.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>

using namespace modTarvola;

namespace
{

constexpr int rigaDelTipo = 2;

DescrizioneEditor descrizione()
{
    return {
        QStringLiteral("fmRegistro"),
        QStringLiteral("Registro"),
        QStringLiteral("Registri"),
        &ProprietaFinestra::RegistroLocale,
        {
            {0, QStringLiteral("Titolo"), QStringLiteral("Titolo"), Formato::Testo, 0},
            {1, QStringLiteral("Abbreviazione"), QStringLiteral("Abbreviato"), Formato::Testo, 1},
            {3, QStringLiteral("EventiCitati"), QStringLiteral("Eventi citati"), Formato::Testo, 3},
            {4, QStringLiteral("DataIniziale"), QStringLiteral("Data iniziale"), Formato::Data, 4},
            {5, QStringLiteral("DataFinale"), QStringLiteral("Data finale"), Formato::Data, 5},
            {6, QStringLiteral("Supporto"), QStringLiteral("Supporto"), Formato::Testo, 6},
            {7, QStringLiteral("Classe"), QStringLiteral("Catalogazione"), Formato::Testo, 7},
            {8, QStringLiteral("SottoClasse"), QStringLiteral("Sub catalogo"), Formato::Testo, 8},
        },
        {Legami::TestiEFile, Legami::Operatori},
        {Nota, TestoRiportato, FileAllegato, Contatto},
    };
}

} // namespace

fmRegistro::fmRegistro(QWidget *sopra) : fmEditor(descrizione(), sopra) {}

void fmRegistro::completaFinestra(QVBoxLayout *colonna)
{
    fmEditor::completaFinestra(colonna);
    ImageCombo2 = new QComboBox(grigliaDettagli()->parentWidget());
    ImageCombo2->setObjectName(QStringLiteral("ImageCombo2"));
    auto *etichetta = new QLabel(QStringLiteral("Tipo"), grigliaDettagli()->parentWidget());
    etichetta->setBuddy(ImageCombo2);
    grigliaDettagli()->addWidget(etichetta, rigaDelTipo, 0);
    grigliaDettagli()->addWidget(ImageCombo2, rigaDelTipo, 1);
    // La tabulazione segue la lettura: il tipo viene fra l'abbreviazione e gli eventi citati.
    setTabOrder(Text1[1], ImageCombo2);
    setTabOrder(ImageCombo2, Text1[3]);
}

void fmRegistro::caricato()
{
    ado::Recordset adoTipi;
    adoTipi.Open(tipiDiRegistro(), connessione(), proprieta.TipoLock);
    for (; !adoTipi.Eof(); adoTipi.MoveNext())
        ImageCombo2->addItem(iconaDelGenere(adoTipi.Campo(0).toInt()), adoTipi.Campo(2).toString(),
                             adoTipi.Campo(0).toInt());
    const QVariant tipo = adoDettagli.Campo(QStringLiteral("Tipo"));
    ImageCombo2->setCurrentIndex(tipo.isValid() ? ImageCombo2->findData(tipo.toInt()) : -1);
    ImageCombo2->setEnabled(codice().isEmpty() && !solaLettura());
}

QString fmRegistro::controlla() const
{
    // Un registro già creato tiene il suo tipo, anche se nessuna etichetta lo mostra.
    const bool senzaTipo = codice().isEmpty() && ImageCombo2->currentIndex() < 0;
    if (Text1.vuote({0}) || senzaTipo)
        return QStringLiteral("Impossibile salvare un registro senza tipo e titolo");
    return {};
}

void fmRegistro::completaNuovo()
{
    adoDettagli.Assegna(QStringLiteral("Tipo"), ImageCombo2->currentData());
    adoDettagli.Assegna(QStringLiteral("Archivio"), proprieta.ArchivioLocale);
}

void fmRegistro::salvato()
{
    contesto().RegistroCorrente = proprieta.RegistroLocale;
    ImageCombo2->setEnabled(false);
}
