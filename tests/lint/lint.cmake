# What the sources promise about themselves.
foreach(check includes words style)
  add_test(NAME lint_${check} COMMAND bash ${CMAKE_CURRENT_LIST_DIR}/${check}.sh)
endforeach()
