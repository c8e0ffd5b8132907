# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT

# What needs packages of npm. They are got by the first test that needs them, into a folder that all
# builds have in common, and are there from then on: the build itself needs none.
set(npm_folder ${PROJECT_SOURCE_DIR}/build/npm)
add_test(NAME browser_npm_packages COMMAND ${CMAKE_CURRENT_LIST_DIR}/install ${npm_folder})
set_tests_properties(browser_npm_packages PROPERTIES
  LABELS browser
  TIMEOUT 300
  FIXTURES_SETUP npm_packages)

# @param subject names the test, which has the files of Python tests that follow
# @param configuration Endurance for those that each run has no time for, else empty
function(postal_scale_npm_browser_test browser subject configuration)
  add_test(NAME browser_${subject}_${browser} CONFIGURATIONS ${configuration}
    COMMAND ${DEVICE_TEST_PYTHON} -B ${CMAKE_CURRENT_SOURCE_DIR}/run.py ${ARGN})
  set_tests_properties(browser_${subject}_${browser} PROPERTIES
    LABELS browser
    TIMEOUT 900
    PROCESSORS 2
    COST 80
    FIXTURES_REQUIRED npm_packages
    ENVIRONMENT "POSTAL_SCALE_BIN=$<TARGET_FILE_DIR:postal-scale>;POSTAL_SCALE_BROWSER=${browser};POSTAL_SCALE_FRAMEWORKS=${npm_folder}/pages;PYTHONPATH=${PROJECT_SOURCE_DIR}/tests/driver")
endfunction()

foreach(browser chromium firefox)
  postal_scale_npm_browser_test(${browser} pages "" frameworks options private)
  postal_scale_npm_browser_test(${browser} any_field "" any_field
    untouched.UntouchedTest.test_what_asking_says any_weight.AnyWeightTest
    remembered.RememberedTest.test_from_now_on)
  postal_scale_npm_browser_test(${browser} every_field Endurance untouched remembered)
  postal_scale_npm_browser_test(${browser} every_kind Endurance any_table any_weight.NoWeightTest)
  postal_scale_browser_test(${browser} every_deed Endurance 1 any_deed remembered_rightly)
endforeach()

# The archives are made for the test; whoever builds the program needs none.
add_custom_target(browser-store ALL DEPENDS browser-store-chromium browser-store-firefox)
add_test(NAME browser_store
  COMMAND ${DEVICE_TEST_PYTHON} -B ${CMAKE_CURRENT_SOURCE_DIR}/test_store.py)
set_tests_properties(browser_store PROPERTIES
  LABELS packaging
  TIMEOUT 120
  FIXTURES_REQUIRED npm_packages
  ENVIRONMENT "POSTAL_SCALE_STORE=${PROJECT_BINARY_DIR}/browser/store;POSTAL_SCALE_LINTER=${npm_folder}/node_modules/.bin/addons-linter")
