# For tests in bash: source it, call check, end with finish.
# shellcheck shell=bash
failures=0

# check WHAT EXPECTED ACTUAL
check() {
  [ "$2" != "$3" ] || return 0
  printf 'FAILED: %s\n  expected: %s\n  actual:   %s\n' "$1" "$2" "$3"
  failures=$((failures + 1))
}

finish() {
  [ "$failures" = 0 ]
  exit
}
