# Completes command lines of hearth in bash. The command itself knows what can come next: it is given
# the words up to the cursor and prints the candidates, one on each line.
_hearth() {
  # A path is often typed behind a quote, which bash leaves in the unfinished word.
  local IFS=$'\n' word=${COMP_WORDS[COMP_CWORD]}
  word=${word#[\'\"]}
  mapfile -t COMPREPLY < <(
    IFS=' '
    "${COMP_WORDS[0]}" complete -- "${COMP_WORDS[@]:1:COMP_CWORD-1}" "$word" 2>/dev/null
  )
  # No blank behind a path: another step may follow.
  [[ ${#COMPREPLY[@]} -gt 0 && ${COMPREPLY[0]} == *.* ]] && compopt -o nospace 2>/dev/null
  return 0
}
complete -o default -F _hearth hearth
