# What the sources promise about themselves.
foreach(check includes parts words style links branches running running_finds)
  add_test(NAME lint_${check} COMMAND bash ${CMAKE_CURRENT_LIST_DIR}/${check}.sh)
endforeach()
add_test(NAME lint_keys COMMAND bash ${CMAKE_CURRENT_LIST_DIR}/keys.sh $<TARGET_FILE:quillmere-keys>)
if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT QUILLMERE_SANITIZE)  # sanitizers stand in for some of it
  add_test(NAME lint_hardening COMMAND bash ${CMAKE_CURRENT_LIST_DIR}/hardening.sh ${CMAKE_BINARY_DIR})
endif()
