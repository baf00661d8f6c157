# The files that are installed besides the programs and their data (manual pages, software catalogue
# entry, the server's systemd unit, copyright and changelog), and the two Debian packages:
# "tonadex", the desktop and terminal programs, and "tonadex-server", which depends on no graphical
# library.
if(NOT CMAKE_SYSTEM_NAME STREQUAL "Linux")
  return()
endif()
set(packaging ${PROJECT_SOURCE_DIR}/packaging)
set(papers ${PROJECT_BINARY_DIR}/packaging)

# The date of a release is in CHANGELOG.md, "## 1.0.0 (2026-05-04)"; before the release it is today.
string(REPLACE "." "\\." version_pattern ${PROJECT_VERSION})
file(STRINGS CHANGELOG.md heading REGEX "^## ${version_pattern} " LIMIT_COUNT 1)
if(heading MATCHES "([0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9])")
  set(TONADEX_RELEASE_DATE ${CMAKE_MATCH_1})
else()
  string(TIMESTAMP TONADEX_RELEASE_DATE "%Y-%m-%d" UTC)
endif()
execute_process(COMMAND date -u -R -d ${TONADEX_RELEASE_DATE}
  OUTPUT_VARIABLE TONADEX_RELEASE_MAIL_DATE OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)

configure_file(${packaging}/tonadex.metainfo.xml.in ${papers}/tonadex.metainfo.xml @ONLY)
install(FILES ${papers}/tonadex.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)

install(FILES ${packaging}/tonadex-mime.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages
  RENAME tonadex.xml)

# manual_page(program component)
function(manual_page program component)
  configure_file(${packaging}/man/${program}.1.in ${papers}/${program}.1 @ONLY)
  install(FILES ${papers}/${program}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
    COMPONENT ${component})
endfunction()
manual_page(tonadex desktop)
manual_page(tonadex-cli desktop)
manual_page(tonadex-server server)

# papers(package component)
function(papers package component)
  set(PACKAGE ${package})
  configure_file(${packaging}/debian/changelog.in ${papers}/${package}/changelog @ONLY)
  install(FILES ${packaging}/debian/copyright ${papers}/${package}/changelog
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} COMPONENT ${component})
  install(FILES ${packaging}/debian/${package}.lintian-overrides
    DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides RENAME ${package} COMPONENT ${component} EXCLUDE_FROM_ALL)
endfunction()
papers(tonadex desktop)
papers(tonadex-server server)
install(FILES README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tonadex)
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tonadex)
install(FILES docs/server.md docs/faults.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tonadex-server
  COMPONENT server)
install(FILES server/deploy/nginx.conf server/deploy/base-de-datos.conf
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tonadex-server/examples COMPONENT server)
# The unit starts /usr/bin/tonadex-server and writes the service's log, so it is only in the
# package.
install(FILES server/deploy/tonadex-server.service DESTINATION lib/systemd/system
  COMPONENT server EXCLUDE_FROM_ALL)
install(FILES server/deploy/tonadex-server.logrotate DESTINATION /etc/logrotate.d
  RENAME tonadex-server COMPONENT server EXCLUDE_FROM_ALL)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tonadex)
set(CPACK_PACKAGE_VENDOR Tonadex)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "Tonadex maintainers <maintainers@localhost>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
  GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS ${packaging}/compress.cmake)
set(CPACK_COMPONENTS_ALL desktop server)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

# Loaded at run time, so that the automatic dependencies miss them: Qt's Spanish texts, a soundfont,
# the certificate authorities for https, and xdg-utils, which opens folders and PDF files.
set(CPACK_DEBIAN_DESKTOP_PACKAGE_NAME tonadex)
set(CPACK_DEBIAN_DESKTOP_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_DESKTOP_PACKAGE_DEPENDS
  "qt6-translations-l10n, timgm6mb-soundfont | sf2-soundfont-gm")
set(CPACK_DEBIAN_DESKTOP_PACKAGE_RECOMMENDS "ca-certificates, xdg-utils")
set(CPACK_DEBIAN_DESKTOP_PACKAGE_SUGGESTS "cups, qt6-wayland, tonadex-server")
set(CPACK_DEBIAN_DESKTOP_DESCRIPTION "Tus melodías, en tu móvil de antes
Busca, compone, arregla, toca e imprime melodías RTTTL, abre ficheros MIDI y
melodías de otros móviles, y las convierte en lo que acepta cada uno:
notación del compositor, pulsaciones de teclas, textos para SMS o cable y
ficheros. Una guía lleva tecla a tecla a quien tiene el móvil en la mano.

Incluye el programa de escritorio, tonadex, y el de terminal, tonadex-cli.")

set(CPACK_DEBIAN_SERVER_PACKAGE_NAME tonadex-server)
set(CPACK_DEBIAN_SERVER_PACKAGE_SECTION net)
set(CPACK_DEBIAN_SERVER_PACKAGE_SUGGESTS "nginx, logrotate")
set(CPACK_DEBIAN_SERVER_PACKAGE_CONTROL_EXTRA
  "${packaging}/server/postinst;${packaging}/server/prerm;${packaging}/server/postrm;${packaging}/server/conffiles")
set(CPACK_DEBIAN_SERVER_DESCRIPTION "Servidor de melodías de Tonadex
Guarda melodías RTTTL y las da a buscar, descargar y subir a los programas de
Tonadex y a cualquier otro por HTTP, y a personas en una página para el
navegador. Trae melodías de dominio público.

El servicio tonadex-server.service se instala sin arrancarlo.")
include(CPack)
