# Il manuale sta accanto al programma, com'è in questa cartella.
file(GLOB_RECURSE sorgenti_guida CONFIGURE_DEPENDS RELATIVE ${CMAKE_CURRENT_LIST_DIR}
     ${CMAKE_CURRENT_LIST_DIR}/*.css ${CMAKE_CURRENT_LIST_DIR}/*.htm
     ${CMAKE_CURRENT_LIST_DIR}/*.png ${CMAKE_CURRENT_LIST_DIR}/*.xml)
set(pagine_guida)
foreach(pagina ${sorgenti_guida})
  add_custom_command(
    OUTPUT ${CMAKE_BINARY_DIR}/guida/${pagina}
    COMMAND ${CMAKE_COMMAND} -E copy ${CMAKE_CURRENT_LIST_DIR}/${pagina}
            ${CMAKE_BINARY_DIR}/guida/${pagina}
    DEPENDS ${CMAKE_CURRENT_LIST_DIR}/${pagina}
    VERBATIM)
  list(APPEND pagine_guida ${CMAKE_BINARY_DIR}/guida/${pagina})
endforeach()
# I contenuti, per chi lo legge fuori dal programma.
list(TRANSFORM sorgenti_guida PREPEND ${CMAKE_CURRENT_LIST_DIR}/ OUTPUT_VARIABLE fonti_guida)
add_custom_command(
  OUTPUT ${CMAKE_BINARY_DIR}/guida/index.html
  COMMAND ${CMAKE_COMMAND} -DGUIDA=${CMAKE_CURRENT_LIST_DIR}
          -DFILE=${CMAKE_BINARY_DIR}/guida/index.html -P ${CMAKE_CURRENT_LIST_DIR}/contenuti.cmake
  DEPENDS ${fonti_guida} ${CMAKE_CURRENT_LIST_DIR}/contenuti.cmake
  VERBATIM)
list(APPEND pagine_guida ${CMAKE_BINARY_DIR}/guida/index.html)
add_custom_target(manuale ALL DEPENDS ${pagine_guida})
