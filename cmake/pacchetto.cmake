# L'installazione, e il pacchetto Debian che ne viene con "cpack".
include(GNUInstallDirs)

set(pacchetto ${CMAKE_BINARY_DIR}/pacchetto)
# La revisione del pacchetto; senza, Debian prenderebbe la storia delle versioni per la propria.
set(TARVOLA_REVISIONE 1)
foreach(nome tarvola.1 tarvola.metainfo.xml copyright changelog.Debian)
  configure_file(pacchetto/${nome}.in ${pacchetto}/${nome} @ONLY)
endforeach()
configure_file(CHANGELOG.md ${pacchetto}/changelog COPYONLY)

# Debian vuole compressi, e senza la data, il manuale e la storia delle versioni.
find_program(GZIP gzip REQUIRED)
add_custom_command(
  OUTPUT ${pacchetto}/tarvola.1.gz ${pacchetto}/changelog.gz ${pacchetto}/changelog.Debian.gz
  COMMAND ${GZIP} -9nfk tarvola.1 changelog changelog.Debian
  DEPENDS ${pacchetto}/tarvola.1 ${pacchetto}/changelog ${pacchetto}/changelog.Debian
  WORKING_DIRECTORY ${pacchetto}
  VERBATIM)
add_custom_target(compressi ALL DEPENDS ${pacchetto}/tarvola.1.gz ${pacchetto}/changelog.gz
                                        ${pacchetto}/changelog.Debian.gz)

set(icone ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable)
install(TARGETS tarvola RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${CMAKE_BINARY_DIR}/tarvola.mod DESTINATION ${CMAKE_INSTALL_DATADIR}/tarvola)
install(DIRECTORY ${CMAKE_BINARY_DIR}/guida DESTINATION ${CMAKE_INSTALL_DATADIR}/tarvola OPTIONAL)
install(FILES pacchetto/tarvola.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES pacchetto/tarvola.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)
install(FILES ${pacchetto}/tarvola.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo
        RENAME org.example.tarvola.metainfo.xml)
install(FILES icone/tarvola.svg DESTINATION ${icone}/apps)
install(FILES icone/archivio_tvd.svg DESTINATION ${icone}/mimetypes
        RENAME application-x-tarvola-archive.svg)
install(FILES ${pacchetto}/tarvola.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
set(documenti ${CMAKE_INSTALL_DATADIR}/doc/tarvola)
install(FILES ${pacchetto}/copyright ${pacchetto}/changelog.gz ${pacchetto}/changelog.Debian.gz
        DESTINATION ${documenti})
# Il manuale si legge anche fra i documenti; il programma non lo cerca lì, perché chi installa può
# farne a meno.
file(MAKE_DIRECTORY ${pacchetto}/doc)
file(CREATE_LINK ../../tarvola/guida ${pacchetto}/doc/html SYMBOLIC)
install(FILES ${pacchetto}/doc/html DESTINATION ${documenti})
install(FILES pacchetto/tarvola-manuale DESTINATION ${CMAKE_INSTALL_DATADIR}/doc-base)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_NAME tarvola)
set(CPACK_PACKAGE_CONTACT "Tarvola <${TARVOLA_ASSISTENZA}>")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${TARVOLA_REVISIONE})
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "trascrizione di antichi registri parrocchiali e civili")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "Chi trascrive descrive un archivio, i suoi registri e gli atti di ciascuno, e
per ogni atto le persone e le famiglie nominate, il loro ruolo e i loro eventi,
con il testo dell'atto e i file che lo accompagnano. Tutto il lavoro sta in un
solo file di archivi, che si può copiare e conservare.")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Ciò che il programma cerca da sé e nessuna libreria collegata dice.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6svg6, qt6-translations-l10n, hunspell-it")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils")
include(CPack)
