' The texts for a sample, from texts.txt: hexadecimal, one per line.
Dim converter
Set converter = CreateObject("Latchkey.clsCryptoAPI")

Function TextOfHex(digits)
    Dim text
    text = converter.ConvertStringFromHex(digits & "78")   ' x keeps the spaces before it
    TextOfHex = Left(text, Len(text) - 1)
End Function

Function TextLines()
    Dim files
    Set files = CreateObject("Scripting.FileSystemObject")
    TextLines = Split(files.OpenTextFile("texts.txt").ReadAll, vbLf)
End Function
