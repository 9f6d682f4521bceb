# Sourced: start_xvfb starts a private X server and exports DISPLAY; stop_xvfb ends it.
start_xvfb() {
  local fifo; fifo=$(mktemp -u); mkfifo "$fifo"
  Xvfb -displayfd 3 -screen 0 1024x768x24 -nolisten tcp 3>"$fifo" >/dev/null 2>&1 &
  XVFB_PID=$!
  local num; read -r -t 20 num <"$fifo" || true
  rm -f "$fifo"
  [ -n "${num:-}" ] || { echo "Xvfb did not start" >&2; return 1; }
  export DISPLAY=":$num"
}
stop_xvfb() {
  [ -n "${XVFB_PID:-}" ] && kill "$XVFB_PID" 2>/dev/null && wait "$XVFB_PID" 2>/dev/null
  XVFB_PID=
}
# A test or benchmark session: the X server and a wineserver kept alive for the whole run, so each
# program starts warm; stop_session ends the wineserver before the X server it draws on.
start_session() {
  start_xvfb || return 1
  wineserver -p
}
stop_session() {
  wineserver -k 2>/dev/null || true
  wineserver -w 2>/dev/null || true
  stop_xvfb
}
