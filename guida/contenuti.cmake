# Scrive in FILE la pagina dei contenuti, per chi legge il manuale fuori dal programma: le sezioni e
# le pagine di indice.xml nella cartella GUIDA, ciascuna col suo titolo.
set(contenuti)
file(STRINGS ${GUIDA}/indice.xml righe REGEX "<(sezione|pagina) " ENCODING UTF-8)
foreach(riga ${righe})
  if(riga MATCHES "<sezione titolo=\"([^\"]+)\"")
    string(APPEND contenuti "</ul>\n<h2>${CMAKE_MATCH_1}</h2>\n<ul>\n")
  elseif(riga MATCHES "<pagina file=\"([^\"]+)\"")
    set(pagina ${CMAKE_MATCH_1})
    file(READ ${GUIDA}/${pagina} testo)
    string(REGEX MATCH "<title>([^<]+)</title>" trovato "${testo}")
    string(APPEND contenuti "<li><a href=\"${pagina}\">${CMAKE_MATCH_1}</a></li>\n")
  endif()
endforeach()
string(REGEX REPLACE "^</ul>\n" "" contenuti "${contenuti}")
file(
  WRITE ${FILE}
  "<!DOCTYPE html>
<html lang=\"it\">
<head>
<meta charset=\"utf-8\">
<title>Manuale di Tarvola</title>
<link rel=\"stylesheet\" type=\"text/css\" href=\"htm/guida.css\">
</head>
<body>
<h1>Manuale di Tarvola</h1>
${contenuti}</ul>
</body>
</html>
")
