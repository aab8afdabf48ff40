#pragma once

#include <QString>
#include <QTextStream>

#include <functional>
#include <vector>

// Ciò che i banchi di misura hanno in comune: una riga per figura, con la mediana, quella del
// pavimento, il rapporto, la meta e se è raggiunta.

double mediana(std::vector<double> valori);
double millisecondi(const std::function<void()> &lavoro);

// La memoria di questo processo al suo massimo, in MiB, dalla nascita o dall'ultimo azzeramento.
double memoriaMassima();
void azzeraMemoriaMassima();

class Tavola
{
public:
    explicit Tavola(int volte) : m_volte(volte) {}

    void intesta();
    // Il nostro tempo e il pavimento, a turno; la meta è sul rapporto. Ciò che varia molto da una
    // volta all'altra, come la partenza di un processo, si prende in più serie.
    void rapporto(const char *nome, double meta, const std::function<double()> &nostro,
                  const std::function<double()> &pavimento, int serie = 1);
    // Una grandezza con una meta sua, senza pavimento.
    void assoluto(const char *nome, double meta, const std::function<double()> &nostro);
    // Due mediane già prese, la meta è sul loro rapporto.
    void rapporto(const char *nome, double meta, double nostro, double suo);
    // Una grandezza già presa; senza meta (0) è solo detta.
    void assoluto(const char *nome, double meta, double nostro);

    // Vero se nessuna figura è rimasta sotto la sua meta.
    bool bastata() const { return m_bastata; }

private:
    void riga(const char *nome, double nostro, double suo, double quanto, double meta, bool bene);

    int m_volte;
    bool m_bastata = true;
    QTextStream m_uscita{stdout};
};
