' The error record through clsMain, and errors in a script.
On Error Resume Next
Const NOT_SET = "91 Latchkey.clsCryptoAPI: Object variable or With block variable not set: no clsMain exists on this thread"
Const NO_ERROR = "0 : "
Dim main, api, other, result
Set api = CreateObject("Latchkey.clsCryptoAPI")

result = api.Encrypt(1, 1)
Check "Encrypt without clsMain", LastError, NOT_SET
result = api.CreateHash("abc", 1)
Check "CreateHash without clsMain", LastError, NOT_SET
result = api.ConvertStringToHex("A")
Check "members that need no record work", LastError, NO_ERROR

Set main = CreateObject("Latchkey.clsMain")
Check "new ErrorLocationID", main.ErrorLocationID, 0
Check "new ErrorType", main.ErrorType, 2
Check "new RTErrorNumber", main.RTErrorNumber, 0
Check "new RTErrorDescription", main.RTErrorDescription, ""
Check "new AppErrorNumber", main.AppErrorNumber, 0
Check "new AppErrorDescription", main.AppErrorDescription, ""
Check "new ErrorExists", main.ErrorExists, False
Check "new ErrorMachineState", main.ErrorMachineState, 0
Check "type of ErrorLocationID", TypeName(main.ErrorLocationID), "Integer"
Check "type of ErrorType", TypeName(main.ErrorType), "Integer"
Check "type of RTErrorNumber", TypeName(main.RTErrorNumber), "Long"
Check "type of AppErrorNumber", TypeName(main.AppErrorNumber), "Long"

Check "bad hash number", api.Encrypt(9, 1), False
Check "ErrorExists", main.ErrorExists, True
Check "ErrorType", main.ErrorType, 2
Check "ErrorLocationID", main.ErrorLocationID, 718
Check "AppErrorNumber", main.AppErrorNumber, 115
Check "AppErrorDescription", main.AppErrorDescription, "Bad hash type"

Check "run-time failure", api.CreateRandom(-1), ""
Check "run-time ErrorType", main.ErrorType, 1
Check "run-time ErrorLocationID", main.ErrorLocationID, 433
Check "run-time RTErrorNumber", main.RTErrorNumber, 5
Check "run-time RTErrorDescription", main.RTErrorDescription, "Invalid procedure call or argument"
Check "nothing was raised", LastError, NO_ERROR

Check "odd hexadecimal", api.ConvertStringFromHex("414"), ""
Check "odd location", main.ErrorLocationID, 727
Check "odd description", main.AppErrorDescription, "Error converting data"

result = api.StringToByteArray(Null)
Check "Null", LastError, "94 Latchkey.clsCryptoAPI: Invalid use of Null"
main.ErrorType = 1
Check "read-only property", Err.Number <> 0, True
Err.Clear
result = api.InputData
Check "write-only property", Err.Number <> 0, True
Err.Clear
result = api.Encrypt(70000, 1)
Check "number too large", Err.Number, 6
Err.Clear
result = api.Encrypt("many", 1)
Check "no number", Err.Number, 13
Err.Clear

' The padding of a block cipher reveals a wrong password.
Set other = CreateObject("Latchkey.clsCryptoAPI")
other.Password = other.StringToByteArray("right")
other.InputData = other.StringToByteArray("attack at dawn")
Check "encrypt", other.Encrypt(4, 3), True
other.InputData = other.OutputData
other.Password = other.StringToByteArray("wrong")
Check "wrong password", other.Decrypt(4, 3), False
Check "wrong password location", main.ErrorLocationID, 717
Check "wrong password number", main.AppErrorNumber, 120
Check "wrong password description", main.AppErrorDescription, "Error decrypting data"
Check "no output", other.ByteArrayToString(other.OutputData), ""

Set main = Nothing
result = api.Encrypt(1, 1)
Check "after clsMain is gone", LastError, NOT_SET
Finish 42
