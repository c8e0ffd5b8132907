# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT

# Where an installation puts what others look for. A relative folder is below the prefix, which may be
# chosen as late as at the installation. An absolute one counts as one that udev, or the browser, looks
# into: --doctor takes the packager's word.
include(GNUInstallDirs)

set(POSTALSCALE_UDEV_FOLDER lib/udev/rules.d CACHE STRING "Folder of udev's rules")
set(POSTALSCALE_CHROMIUM_HOSTS_FOLDER ${CMAKE_INSTALL_SYSCONFDIR}/chromium/native-messaging-hosts
  CACHE STRING "Folder in which Chromium looks for hosts")
set(POSTALSCALE_MOZILLA_HOSTS_FOLDER lib/mozilla/native-messaging-hosts
  CACHE STRING "Folder in which Firefox looks for hosts")
set(POSTALSCALE_CHROMIUM_EXTENSIONS_FOLDER ${CMAKE_INSTALL_DATADIR}/chromium/extensions
  CACHE STRING "Folder from which Chromium takes extensions")
set(POSTALSCALE_MOZILLA_EXTENSIONS_FOLDER ${CMAKE_INSTALL_DATADIR}/mozilla/extensions
  CACHE STRING "Folder from which Firefox takes extensions")
set(POSTALSCALE_ZSH_FOLDER ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions
  CACHE STRING "Folder in which zsh looks for completions")
set(system_information ${CMAKE_INSTALL_SYSCONFDIR}/xdg/postal-scale)

# seen_from_program FOLDER VARIABLE: as the program finds it from its own folder, wherever both are.
function(seen_from_program folder variable)
  if(NOT IS_ABSOLUTE ${folder})
    cmake_path(ABSOLUTE_PATH folder BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX})
    file(RELATIVE_PATH folder ${CMAKE_INSTALL_FULL_BINDIR} ${folder})
  endif()
  set(${variable} ${folder} PARENT_SCOPE)
endfunction()
