# Completion of quillet's verbs and options for bash.
_quillet() {
  local words=
  case ${COMP_WORDS[1]-}:$COMP_CWORD in
    *:1) words='status clip shelf quit --help --version' ;;
    clip:2) words='list copy show pin delete clear --help' ;;
    shelf:2) words='show hide' ;;
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
