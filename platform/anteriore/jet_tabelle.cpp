#include "platform/anteriore/jet_tabelle.h"

#include "platform/anteriore/jet_righe.h"
#include "platform/anteriore/jet_testo.h"
#include "platform/errore.h"

namespace jet
{

namespace
{

constexpr quint32 paginaDelCatalogo = 2;
constexpr char paginaDiDefinizione = 2;
constexpr char paginaDiMappa = 5;
constexpr qsizetype testaDiPagina = 8;
constexpr int pagineDiUnaDefinizione = 64;

constexpr qsizetype postoRighe = 0x10;
constexpr qsizetype postoColonneMassime = 0x29;
constexpr qsizetype postoVariabili = 0x2b;
constexpr qsizetype postoColonne = 0x2d;
constexpr qsizetype postoIndici = 0x33;
constexpr qsizetype postoMappa = 0x37;
constexpr qsizetype fineTesta = 0x3f;
constexpr qsizetype byteDiIndice = 12;
constexpr qsizetype byteDiColonna = 25;
constexpr quint8 segnoFissa = 1;

[[noreturn]] void guasta(const QString &nome)
{
    throw ado::Errore(
        ado::Causa::Danneggiato,
        QStringLiteral("il file è danneggiato: la tabella %1 non si può leggere").arg(nome));
}

// Una definizione può continuare su altre pagine; si riuniscono come fosse una sola.
QByteArray byteDiDefinizione(Pagine &pagine, quint32 prima, const QString &nome)
{
    QByteArray riuniti;
    Pagina pagina;
    quint32 quale = prima;
    for (int i = 0; quale != 0; ++i) {
        if (i == pagineDiUnaDefinizione || !pagine.legge(quale, pagina) ||
            pagina[0] != paginaDiDefinizione)
            guasta(nome);
        const QByteArrayView byte(pagina);
        riuniti.append(i == 0 ? byte : byte.sliced(testaDiPagina));
        quale = numero<quint32>(byte, 4);
    }
    return riuniti;
}

Colonna colonnaDi(QByteArrayView byte)
{
    Colonna colonna;
    colonna.tipo = static_cast<Tipo>(byte[0]);
    colonna.numero = numero<quint16>(byte, 5);
    colonna.fissa = (static_cast<quint8>(byte[15]) & segnoFissa) != 0;
    colonna.posto = numero<quint16>(byte, colonna.fissa ? 21 : 7);
    colonna.lunghezza = numero<quint16>(byte, 23);
    return colonna;
}

Tabella formaDi(Pagine &pagine, quint32 definizione, const QString &nome)
{
    const QByteArray riuniti = byteDiDefinizione(pagine, definizione, nome);
    const QByteArrayView byte(riuniti);
    Tabella tabella;
    tabella.nome = nome;
    tabella.definizione = definizione;
    if (byte.size() < fineTesta)
        guasta(nome);
    tabella.righe = numero<quint32>(byte, postoRighe);
    tabella.colonneMassime = numero<quint16>(byte, postoColonneMassime);
    tabella.variabili = numero<quint16>(byte, postoVariabili);
    tabella.mappa = numero<quint32>(byte, postoMappa);
    const int quante = numero<quint16>(byte, postoColonne);
    qsizetype posto = fineTesta + byteDiIndice * qsizetype{numero<quint32>(byte, postoIndici)};
    qsizetype postoNomi = posto + byteDiColonna * quante;
    for (int i = 0; i < quante; ++i, posto += byteDiColonna) {
        if (postoNomi + 2 > byte.size())
            guasta(nome);
        const qsizetype lunghezza = numero<quint16>(byte, postoNomi);
        if (postoNomi + 2 + lunghezza > byte.size())
            guasta(nome);
        tabella.colonne.append(colonnaDi(byte.sliced(posto, byteDiColonna)));
        tabella.colonne.last().nome = testoDi(byte.sliced(postoNomi + 2, lunghezza)).testo;
        postoNomi += 2 + lunghezza;
    }
    return tabella;
}

void aggiungeSegnate(QByteArrayView segni, quint32 prima, std::vector<quint32> &in)
{
    for (qsizetype i = 0; i < segni.size(); ++i) {
        for (int bit = 0; segni[i] != 0 && bit < 8; ++bit) {
            if ((static_cast<quint8>(segni[i]) >> bit & 1) != 0)
                in.push_back(prima + static_cast<quint32>(i * 8 + bit));
        }
    }
}

// La mappa è breve, un primo numero di pagina e i segni di quelle che seguono, o è un elenco di
// pagine di segni. Falso se non si è potuta leggere tutta.
bool leggeMappa(Pagine &pagine, quint32 scritto, std::vector<quint32> &in)
{
    const Posto posto(scritto);
    Pagina pagina;
    if (!pagine.legge(posto.pagina, pagina) || !proprietario(pagina))
        return false;
    const auto trovata = riga(pagina, posto.riga);
    if (!trovata || trovata->byte.size() < 5)
        return false;
    const QByteArrayView mappa = trovata->byte;
    if (mappa[0] == 0) {
        aggiungeSegnate(mappa.sliced(5), numero<quint32>(mappa, 1), in);
        return true;
    }
    if (mappa[0] != 1)
        return false;
    bool intera = true;
    Pagina segni;
    quint32 prima = 0;
    for (qsizetype i = 1; i + 4 <= mappa.size(); i += 4, prima += (byteDiPagina - 4) * 8) {
        const auto quale = numero<quint32>(mappa, i);
        if (quale == 0)
            continue;
        if (pagine.legge(quale, segni) && segni[0] == paginaDiMappa)
            aggiungeSegnate(QByteArrayView(segni).sliced(4), prima, in);
        else
            intera = false;
    }
    return intera;
}

} // namespace

const Colonna *Tabella::colonna(const QString &cercata) const
{
    for (const Colonna &una : colonne) {
        if (una.nome.compare(cercata, Qt::CaseInsensitive) == 0)
            return &una;
    }
    return nullptr;
}

PagineDiTabella pagineDi(Pagine &pagine, const Tabella &tabella)
{
    PagineDiTabella trovate;
    trovate.mappaIntera = leggeMappa(pagine, tabella.mappa, trovate.pagine);
    if (trovate.mappaIntera)
        return trovate;
    trovate.pagine.clear();
    Pagina pagina;
    for (quint32 quale = 1; quale < pagine.quante(); ++quale) {
        if (pagine.legge(quale, pagina) && proprietario(pagina) == tabella.definizione)
            trovate.pagine.push_back(quale);
    }
    return trovate;
}

Catalogo::Catalogo(Pagine &pagine) : m_pagine(pagine)
{
    constexpr int tabellaLocale = 1;
    constexpr quint32 segniDiServizio = 0x80000002;
    const Tabella catalogo = formaDi(pagine, paginaDelCatalogo, QStringLiteral("MSysObjects"));
    const Colonna *codice = catalogo.colonna(QStringLiteral("Id"));
    const Colonna *nome = catalogo.colonna(QStringLiteral("Name"));
    const Colonna *tipo = catalogo.colonna(QStringLiteral("Type"));
    const Colonna *segni = catalogo.colonna(QStringLiteral("Flags"));
    if (codice == nullptr || nome == nullptr || tipo == nullptr || segni == nullptr)
        guasta(catalogo.nome);
    Scorritore righe(pagine, catalogo);
    while (righe.prossima()) {
        if (righe.intero(*tipo) != tabellaLocale)
            continue;
        const auto suoi = static_cast<quint32>(righe.intero(*segni).value_or(0));
        const auto definizione = static_cast<quint32>(righe.intero(*codice).value_or(0));
        const QString suo = testoDi(righe.campo(*nome).byte).testo;
        if ((suoi & segniDiServizio) == 0)
            m_voci.append({suo, definizione & 0xffffff});
    }
    m_intero = righe.lette() == catalogo.righe && righe.guasti() == 0;
}

QStringList Catalogo::nomi() const
{
    QStringList tutti;
    for (const Voce &voce : m_voci)
        tutti.append(voce.nome);
    return tutti;
}

Tabella Catalogo::tabella(const QString &nome) const
{
    for (const Voce &voce : m_voci) {
        if (voce.nome.compare(nome, Qt::CaseInsensitive) == 0)
            return formaDi(m_pagine, voce.definizione, voce.nome);
    }
    throw ado::Errore(ado::Causa::NonArchivio,
                      QStringLiteral("nel file manca la tabella %1").arg(nome));
}

} // namespace jet
