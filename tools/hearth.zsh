#compdef hearth
# Completion of the hearth command for zsh. The command itself knows what can come next.
local -a candidates
candidates=("${(@f)$(_call_program words ${(q)words[1]} complete -- \
  ${(q)words[2,CURRENT-1]} ${(q)PREFIX} 2>/dev/null)}")
candidates=(${candidates:#})
if (( $#candidates )); then
  # A step of a path may go on, so no blank follows it.
  local -a ends
  [[ $candidates[1] == *.* ]] && ends=(-S '')
  compadd "${ends[@]}" -a candidates
else
  _files
fi
