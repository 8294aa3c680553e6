# Steps of a test that are tests by themselves; sourced. Who sources it sets `folder`, and `passed` and
# `failed` to 0.

step() {  # NAME COMMAND...
  local name=$1
  shift
  if "$@" >"$folder/step.log" 2>&1; then
    echo "$name: ok"
    passed=$((passed + 1))
  else
    echo "$name: FAILED"
    tail -n 40 "$folder/step.log"
    failed=$((failed + 1))
    return 1
  fi
}
