# Serbian Latin to Serbian Cyrillic, applied to every text of the catalog template to make the
# Cyrillic catalog. The program's texts are written without diacritics, so the letters the
# domain's words need are put back first; formats, abbreviations and Roman numerals stay Latin.

# Keep: formats, names and abbreviations written in Latin letters in Cyrillic texts too.
s/%lld/%@15@/g
s/%s/%@1@/g
s/%d/%@2@/g
s/\bOK\b/@3@/g
s/\bCancel\b/@4@/g
s/\bSRSS\b/@5@/g
s/\bNDA\b/@6@/g
s/\bPDF\b/@7@/g
s/\bpdf\b/@8@/g
s/\bvld\b/@9@/g
s/\bVorta\b/@10@/g
s/\bcrc\([0-9]\)/@11@\1/g
s/\bII\b/@12@/g
s/\bI\b/@13@/g
s/^g$/@14@/

# Diacritics of the domain's words.
s/pterecenj/pterećenj/g
s/\([Ss]\)lucaj/\1lučaj/g
s/\([Ss]\)ledeci/\1ledeći/g
s/\([Gg]\)reska/\1reška/g
s/zelite/želite/g
s/izmedju/između/g
s/\bmoze\b/može/g
s/Stampa/Štampa/g
s/stampa/štampa/g
s/obrisete/obrišete/g
s/tezina/težina/g
s/\([Ss]\)eizmick/\1eizmičk/g
s/\([Bb]\)risi/\1riši/g
s/racun/račun/g
s/\([Gg]\)enerisi\b/\1eneriši/g
s/mogucih/mogućih/g
s/najvise/najviše/g
s/\bvise\b/više/g
s/\bVec\b/Već/g
s/\([Tt]\)ekuc\([ie]\)/\1ekuć\2/g
s/\bce\b/će/g
s/\bnece\b/neće/g
s/\([Uu]\)cit/\1čit/g
s/\([Uu]\)kljuci/\1ključi/g
s/\([Ii]\)skljuci/\1sključi/g
s/skladist/skladišt/g
s/\([Ss]\)kladist/\1kladišt/g
s/rastucem/rastućem/g
s/opadajucem/opadajućem/g
s/moc\b/moć/g
s/\([Pp]\)onisti/\1oništi/g
s/ploca/ploča/g

# Two letters for one sound, then one letter for one.
s/LJ/Љ/g; s/Lj/Љ/g; s/lj/љ/g
s/NJ/Њ/g; s/Nj/Њ/g; s/nj/њ/g
s/DŽ/Џ/g; s/Dž/Џ/g; s/dž/џ/g
s/Č/Ч/g; s/č/ч/g; s/Ć/Ћ/g; s/ć/ћ/g; s/Š/Ш/g; s/š/ш/g; s/Ž/Ж/g; s/ž/ж/g; s/Đ/Ђ/g; s/đ/ђ/g
s/A/А/g; s/B/Б/g; s/C/Ц/g; s/D/Д/g; s/E/Е/g; s/F/Ф/g; s/G/Г/g; s/H/Х/g; s/I/И/g; s/J/Ј/g
s/K/К/g; s/L/Л/g; s/M/М/g; s/N/Н/g; s/O/О/g; s/P/П/g; s/R/Р/g; s/S/С/g; s/T/Т/g; s/U/У/g
s/V/В/g; s/Z/З/g; s/Q/К/g; s/W/В/g; s/X/Кс/g; s/Y/Ј/g
s/a/а/g; s/b/б/g; s/c/ц/g; s/d/д/g; s/e/е/g; s/f/ф/g; s/g/г/g; s/h/х/g; s/i/и/g; s/j/ј/g
s/k/к/g; s/l/л/g; s/m/м/g; s/n/н/g; s/o/о/g; s/p/п/g; s/r/р/g; s/s/с/g; s/t/т/g; s/u/у/g
s/v/в/g; s/z/з/g; s/q/к/g; s/w/в/g; s/x/кс/g; s/y/ј/g

# Back what was kept.
s/@14@/g/g
s/@13@/I/g
s/@12@/II/g
s/@11@/crc/g
s/@10@/Vorta/g
s/@9@/vld/g
s/@8@/pdf/g
s/@7@/PDF/g
s/@6@/NDA/g
s/@5@/SRSS/g
s/@4@/Cancel/g
s/@3@/OK/g
s/%@2@/%d/g
s/%@1@/%s/g
s/%@15@/%lld/g
