# Made by scripts/generate-contract.
_driver() {
  local word=${COMP_WORDS[COMP_CWORD]}
  COMPREPLY=()
  if [ "$COMP_CWORD" -eq 1 ]; then
    COMPREPLY=($(compgen -W 'capture-service capture bg-click bg-scroll bg-move bg-drag bg-focus-hold capture-probe focus-release bg-key bg-type bg-paste-files watch-input permissions scene lock-now lock-serve lock-arm lock-disarm lock-status lock-query lock-unlock lock-guard keep-awake session windows ax-find-text ax-texts-at ax-press-child ax-at ax-press ax-press-in-document ax-press-exact ax-match ax-press-match ax-popup-items ax-slider ax-insert ax-focus reveal ax-menu ax-menubar ax-list ax-dump ax-modal ax-modal-press ax-focused ax-set-value' -- "$word"))
    return
  fi
  case "${COMP_WORDS[1]}:$COMP_CWORD" in
    capture-service:2) local IFS=$'\n'; COMPREPLY=($(compgen -f -- "$word")) ;;
    capture:3) local IFS=$'\n'; COMPREPLY=($(compgen -f -- "$word")) ;;
    bg-click:5) COMPREPLY=($(compgen -W 'left right' -- "$word")) ;;
    bg-paste-files:[3-9]|bg-paste-files:[1-9][0-9]*) local IFS=$'\n'; COMPREPLY=($(compgen -f -- "$word")) ;;
    ax-press-child:4) COMPREPLY=($(compgen -W 'last' -- "$word")) ;;
    ax-press-exact:4) COMPREPLY=($(compgen -W 'only last' -- "$word")) ;;
    ax-slider:4) COMPREPLY=($(compgen -W 'increment decrement' -- "$word")) ;;
    ax-insert:6) COMPREPLY=($(compgen -W 'replace message end new_line caret' -- "$word")) ;;
  esac
}
complete -o filenames -F _driver driver
