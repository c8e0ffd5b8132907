# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT

# Makes the rule for the identity that the program itself looks for. POSTALSCALE_UDEV_RULE is the
# file; its number in front says when udev reads it, so it keeps its name. The rule's line and its
# name, udevRuleLine and udevRuleName, are for those who put it there themselves. scaleVendorId and
# scaleProductId are left for other files that need them, each four lower-case digits.
include_guard(DIRECTORY)

set(identity_header ${PROJECT_SOURCE_DIR}/scale/ScaleIdentity.h)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${identity_header})
file(READ ${identity_header} identity)
foreach(name scaleVendorId scaleProductId)
  if(NOT identity MATCHES "${name} = 0x([0-9A-Fa-f][0-9A-Fa-f][0-9A-Fa-f][0-9A-Fa-f]);")
    message(FATAL_ERROR "${identity_header} does not give ${name} as four hexadecimal digits")
  endif()
  # As the kernel writes it.
  string(TOLOWER ${CMAKE_MATCH_1} ${name})
endforeach()

# Scales of the point-of-sale class that public lists of USB ids name. The program finds such a scale
# by what it says of itself, but udev sees only its numbers. --doctor has the line for one that is not
# among them.
set(knownScales
  0922:8003 0922:8004 0eb8:f000 1446:6a73 2474:0550 2474:3550 7b7c:0100)
set(knownScaleRules "")
set(knownScaleModaliases "")
foreach(known IN LISTS knownScales)
  string(REPLACE ":" ";" ids ${known})
  list(GET ids 0 vendor)
  list(GET ids 1 product)
  string(APPEND knownScaleRules
    "ACTION!=\"remove\", SUBSYSTEM==\"hidraw\", ATTRS{idVendor}==\"${vendor}\", "
    "ATTRS{idProduct}==\"${product}\", TAG+=\"uaccess\"\n")
  string(TOUPPER ${vendor} vendor)
  string(TOUPPER ${product} product)
  string(APPEND knownScaleModaliases "\n    <modalias>usb:v${vendor}p${product}d*</modalias>")
endforeach()

set(udevRuleName 60-postal-scale.rules)
set(POSTALSCALE_UDEV_RULE ${PROJECT_BINARY_DIR}/scale/udev/${udevRuleName})
configure_file(${CMAKE_CURRENT_LIST_DIR}/${udevRuleName}.in ${POSTALSCALE_UDEV_RULE} @ONLY)
file(STRINGS ${POSTALSCALE_UDEV_RULE} udevRuleLine REGEX "^[^#]" LIMIT_COUNT 1)
