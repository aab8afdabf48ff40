#pragma once

#include "atti/campo.h"
#include "atti/colonne.h"

#include <QMap>
#include <QWidget>

#include <vector>

// Come si chiamano le righe e le caselle di un posto, e la tabella in cui stanno.
namespace pagina
{

QString tabellaDi(const modTarvola::scheda::Posto &posto, int evento);
// Della riga: il posto, o il suo evento.
QString etichettaDi(const modTarvola::scheda::Posto &posto, int evento);
// Della casella.
QString etichettaDi(const modTarvola::scheda::Posto &posto, int evento, const QString &campo);

} // namespace pagina

// Una riga della pagina: l'etichetta e le sue caselle, nelle colonne di tutte le righe. Le
// didascalie stanno sopra le caselle; dove le direbbe già la riga di sopra non si ripetono.
class RigaPagina : public QWidget
{
    Q_OBJECT

public:
    RigaPagina(const modTarvola::scheda::Riga &riga, const QString &tabella, bool rientrata,
               QWidget *sopra);

    // La persona della riga, quando sta già nell'atto; 0 se no. Vale per gli elenchi.
    int chiave = 0;

    const modTarvola::scheda::Riga &riga() const { return m_riga; }
    // L'etichetta che si legge e quella che si sente; il posto nell'elenco.
    void chiama(const QString &etichetta, int quale);
    // Le caselle, nell'ordine in cui si leggono; quelle nascoste nascono quando servono.
    const std::vector<Campo *> &campi() const { return m_campi; }
    // La casella del campo, fatta nascere se occorre; nulla se la riga non l'ha.
    Campo *campo(const QString &nome);
    // La casella del campo, se è già nata; nulla se no.
    Campo *nata(const QString &nome) const;
    // Mostra o nasconde le caselle secondo ciò che contengono e l'uso di ciascuna.
    void rivede();
    bool vuota() const;
    // I ruoli fra cui si sceglie, dove il ruolo sta al posto dell'etichetta.
    void offreRuoli(const std::vector<std::pair<int, QString>> &ruoli);
    // Decide quali linee hanno le didascalie: `dette` è l'ultima didascalia di ogni colonna nelle
    // righe di sopra, e diventa quella che leggono le righe di sotto.
    void intesta(QMap<int, QString> &dette);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

signals:
    void cambiata(Campo *campo);
    void natoCampo(Campo *campo);
    // Le caselle che si vedono non sono più le stesse.
    void ridisposta();

protected:
    void resizeEvent(QResizeEvent *evento) override;
    void changeEvent(QEvent *evento) override;

private:
    struct Collocato {
        Campo *campo = nullptr;
        colonne::Posto posto;
    };
    Campo *nasce(const modTarvola::scheda::Casella &casella);
    void dispone();
    void colloca();
    int altaUnaCasella() const;
    int altaUnaTestata() const;

    modTarvola::scheda::Riga m_riga;
    QString m_tabella;
    QString m_chi;
    int m_quale = 0;
    bool m_rientrata;
    class QLabel *m_capo;
    std::vector<Campo *> m_campi;
    std::vector<Collocato> m_collocati; // le caselle che si vedono, senza il ruolo
    std::vector<bool> m_intestate;      // per linea: vi stanno le didascalie
};
