# Completion of quillet's verbs and options for bash.
_quillet() {
  local words=
  case ${COMP_WORDS[1]-}:$COMP_CWORD in
    *:1) words='status clip shelf snap awake dark icons hidden display-sleep keyboard-lock
      stats setup quit --help --version' ;;
    clip:2) words='list copy show pin delete clear --help' ;;
    shelf:2) words='show hide' ;;
    snap:2) words='left right top bottom maximize center restore next-display' ;;
    awake:2) words='on off toggle --allow-display-sleep' ;;
    dark:2 | icons:2 | hidden:2) words='on off toggle' ;;
    stats:*) words='--json --watch' ;;
    awake:3)
      case ${COMP_WORDS[2]} in
        on) words='30m 1h 2h 4h' ;;
        --allow-display-sleep) words='on off' ;;
      esac
      ;;
    clip:*)
      case ${COMP_WORDS[2]} in
        list) words='--json --limit' ;;
        copy) words='--plain' ;;
        clear) words='--keep-pinned' ;;
      esac
      ;;
  esac
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "${COMP_WORDS[COMP_CWORD]}")
}
complete -F _quillet quillet
