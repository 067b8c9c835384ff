# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
# Installs the program, its data and the files for the desktop: `cmake --install build/release --prefix DIR`.

include(GNUInstallDirs)
install(TARGETS tonewright RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
install(DIRECTORY "${TONEWRIGHT_SHARE_DIR}/" DESTINATION "${CMAKE_INSTALL_DATADIR}/tonewright")
install(DIRECTORY "${TONEWRIGHT_LV2_DIR}/" DESTINATION lib/lv2 USE_SOURCE_PERMISSIONS)
set(desktop "${PROJECT_SOURCE_DIR}/resources/desktop")
install(FILES "${desktop}/example.tonewright.Tonewright.desktop" DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
install(FILES "${desktop}/example.tonewright.Tonewright.metainfo.xml" DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")
install(FILES "${desktop}/example.tonewright.Tonewright.svg"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps")
install(FILES "${desktop}/tonewright.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
