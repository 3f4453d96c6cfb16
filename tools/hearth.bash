# Completion of the hearth command for bash. The command itself knows what can come next.
_hearth() {
  local IFS=$'\n' word=${COMP_WORDS[COMP_CWORD]}
  word=${word#[\'\"]}
  mapfile -t COMPREPLY < <(
    IFS=' '
    "${COMP_WORDS[0]}" complete -- "${COMP_WORDS[@]:1:COMP_CWORD-1}" "$word" 2>/dev/null
  )
  # A step of a path may go on; an answer of one word with something behind it is no longer a step.
  [[ ${#COMPREPLY[@]} -gt 0 && ${COMPREPLY[0]} == *.* ]] && compopt -o nospace 2>/dev/null
  return 0
}
complete -o default -F _hearth hearth
