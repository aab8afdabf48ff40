#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <vector>

// Le forme che le parole delle caselle prendono nei testi, secondo il luogo della formula.
namespace modTarvola::formule
{

class Declinazioni
{
public:
    // La parola di una casella stava nel testo così, in quel luogo.
    void impara(const QString &casella, const QString &testo, const QString &luogo);
    // Vero se la forma fu già vista per la parola.
    bool conosce(const QString &casella, const QString &testo) const;

    struct Forma {
        QString testo;
        double sicurezza = 0; // da 0 a 1; 0: non si sa
    };
    // La forma della parola in quel luogo: quella già vista, quella che prende dove gli altri nomi
    // vanno come lì, o quella che la desinenza degli altri le darebbe, se almeno due concordano.
    Forma forma(const QString &casella, const QString &luogo) const;
    // Tutte le forme già viste della parola.
    QStringList forme(const QString &casella) const;
    // La parola delle caselle che più spesso prende quella forma; vuota se non se ne conosce.
    QString base(const QString &testo) const;

    // Vero se nei luoghi che cominciano così le parole stanno quasi sempre come nelle caselle.
    bool immutate(const QString &luogo) const;

private:
    struct Vista {
        QString luogo;
        QString testo;
        int volte = 0;
        int ultima = 0;
    };

    const Vista *vista(const QString &casella, const QString &luogo) const;
    Forma daAltriLuoghi(const QString &casella, const QString &luogo) const;
    Forma perDesinenza(const QString &casella, const QString &luogo) const;

    QHash<QString, std::vector<Vista>> m_viste; // per parola della casella
    QHash<QString, QStringList> m_nelLuogo;     // le parole viste in un luogo
    QHash<QString, QHash<QString, int>> m_basi; // per forma
    int m_volta = 0;
};

} // namespace modTarvola::formule
