# Le intestazioni di Qt e della libreria standard, che non cambiano mai, si leggono una volta sola
# per libreria e una per tutte le prove. Chi le usa le include lo stesso: il controllo dei sorgenti
# (strumenti/lint.py) li legge senza, e trova ciò che manca.
# Solo le più usate: da tutto QtCore verrebbe un file grande il doppio, e più lento da caricare.
set(TARVOLA_COMUNI
    <QDir>
    <QFile>
    <QFileInfo>
    <QHash>
    <QRegularExpression>
    <QSet>
    <QString>
    <QStringList>
    <QVariant>
    <algorithm>
    <array>
    <functional>
    <memory>
    <optional>
    <utility>
    <vector>)
set(TARVOLA_DI_FINESTRE
    <QAction>
    <QApplication>
    <QDialog>
    <QGridLayout>
    <QLabel>
    <QLineEdit>
    <QMainWindow>
    <QPushButton>
    <QTableView>)

target_precompile_headers(tarvola_dati PRIVATE ${TARVOLA_COMUNI})
target_precompile_headers(tarvola_finestre PRIVATE ${TARVOLA_COMUNI} ${TARVOLA_DI_FINESTRE})

# Le prove senza finestre e quelle con finestre: QTest stesso cambia fra le une e le altre.
function(tarvola_precompila_prove)
  foreach(libreria tarvola_dati tarvola_finestre)
    set(nome precompilati_${libreria})
    add_library(${nome} OBJECT EXCLUDE_FROM_ALL ${CMAKE_SOURCE_DIR}/tests/precompilati.cpp)
    set_target_properties(${nome} PROPERTIES AUTOMOC OFF)
    target_link_libraries(${nome} PRIVATE ${libreria} Qt6::Test tarvola_avvisi)
    target_precompile_headers(${nome} PRIVATE ${TARVOLA_COMUNI} <QTest>)
    target_compile_options(${nome} PRIVATE ${TARVOLA_SENZA_OTTIMIZZARE})
  endforeach()
  target_precompile_headers(precompilati_tarvola_finestre PRIVATE ${TARVOLA_DI_FINESTRE})
endfunction()
