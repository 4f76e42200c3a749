# bash completion for tpcli. Command words are completed by tpcli itself (--complete), from the
# same grammar as its shell, with the policy and field-set names of the state the line names.

_tpcli() {
   local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]}
   case $prev in
   -s | --state | --library)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -f -- "$cur")
      return
      ;;
   --revision)
      mapfile -t COMPREPLY < <(compgen -W "1 2" -- "$cur")
      return
      ;;
   --trace)
      mapfile -t COMPREPLY < <(compgen -W "0 1 2 3 4 5 6 7 8 9" -- "$cur")
      return
      ;;
   esac
   if [[ $cur == -* ]]; then
      mapfile -t COMPREPLY < <(compgen -W "-s --state --json --revision --trace --no-pager
         --records --library --help --version" -- "$cur")
      return
   fi

   # The options that choose the state and the library go along; the rest are command words.
   local options=() command=() i=1 word
   while ((i < COMP_CWORD)); do
      word=${COMP_WORDS[i]}
      case $word in
      -s | --state | --library)
         options+=("$word" "${COMP_WORDS[i + 1]}")
         ((i += 2))
         continue
         ;;
      --revision | --trace) ((i += 1)) ;;
      --state=* | --library=*) options+=("$word") ;;
      -*) ;;
      *) command+=("$word") ;;
      esac
      ((i += 1))
   done
   mapfile -t COMPREPLY < <("${COMP_WORDS[0]}" "${options[@]}" --complete -- "${command[@]}" \
      "$cur" 2>/dev/null)
   # The two commands outside the show and clear grammar.
   if ((${#command[@]} == 0)); then
      for extra in metrics shell; do
         [[ $extra == "$cur"* ]] && COMPREPLY+=("$extra")
      done
   fi
}
complete -F _tpcli tpcli
