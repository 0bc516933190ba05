# Made by scripts/generate-tables.
_simulated_mac() {
  local word=${COMP_WORDS[COMP_CWORD]} files=
  local words=
  if [ "$COMP_CWORD" -eq 1 ]; then
    words='run serve stop list view report check import screenshot snapshot state tree value journal trace violations fault failed wait advance clock help lock unlock leave return quit end front hang recover in user remove connect disconnect replug request end-loop withdraw silence invalidate disable --help --version'
  else
    case "${COMP_WORDS[1]}" in
      run) words='--no-pictures --record --seed --sleep --snapshot --virtual'; files=yes ;;
      serve) words='--no-pictures --record --seed --socket --until-closed --view --virtual'; files=yes ;;
      stop) if [ "$COMP_CWORD" -eq 2 ]; then words+=' sharing'; fi ;;
      report) files=yes ;;
      check) words='--json'; files=yes ;;
      import) files=yes ;;
      screenshot) files=yes ;;
      snapshot) files=yes ;;
      state) words='--user' ;;
      tree) words='--text' ;;
      journal) words='--text' ;;
      trace) words='--text' ;;
      wait) if [ "$COMP_CWORD" -eq 2 ]; then words+=' until'; fi ;;
      clock) if [ "$COMP_CWORD" -eq 2 ]; then words+=' stop step run'; fi ;;
      help) if [ "$COMP_CWORD" -eq 2 ]; then words+=' calls outcomes happenings reactions habits releases'; fi ;;
      leave) if [ "$COMP_CWORD" -eq 2 ]; then words+=' console'; fi ;;
      return) if [ "$COMP_CWORD" -eq 2 ]; then words+=' to'; fi ;;
      end) if [ "$COMP_CWORD" -eq 2 ]; then words+=' process'; fi ;;
      user) if [ "$COMP_CWORD" -eq 2 ]; then words+=' key click move scroll drag press release copy'; fi ;;
      remove) if [ "$COMP_CWORD" -eq 2 ]; then words+=' displays'; fi ;;
      connect) if [ "$COMP_CWORD" -eq 2 ]; then words+=' display'; fi ;;
      disconnect) if [ "$COMP_CWORD" -eq 2 ]; then words+=' display'; fi ;;
      replug) if [ "$COMP_CWORD" -eq 2 ]; then words+=' display'; fi ;;
      request) if [ "$COMP_CWORD" -eq 2 ]; then words+=' termination'; fi ;;
      withdraw) if [ "$COMP_CWORD" -eq 2 ]; then words+=' recording accessibility'; fi ;;
      silence) if [ "$COMP_CWORD" -eq 2 ]; then words+=' taps'; fi ;;
      invalidate) if [ "$COMP_CWORD" -eq 2 ]; then words+=' taps'; fi ;;
      disable) if [ "$COMP_CWORD" -eq 2 ]; then words+=' taps'; fi ;;
    esac
  fi
  COMPREPLY=($(compgen -W "$words" -- "$word"))
  if [ -n "$files" ]; then
    local IFS=$'\n'; COMPREPLY+=($(compgen -f -- "$word"))
  fi
}
complete -o filenames -F _simulated_mac simulated-mac
