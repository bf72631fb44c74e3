@echo off
rem run-tests.cmd [RING or RING.PROGRAM]...: runs the test programs in bin\ that tests.txt lists, all of them or the
rem named ones, and prints a summary. Rings: core, service, host. Each program writes its output to logs\. Ends with
rem status 0 if every case passed or was skipped. Without arguments, waits for a key at the end, for a double click.
setlocal
cd /d "%~dp0"
set "wanted=%*"
set "bad="
set /a programs=0, left_out=0
for %%r in (core service host) do set /a passed_%%r=0, failed_%%r=0, skipped_%%r=0
if not exist tests.txt echo tests.txt is missing: this script runs where it was unpacked, beside bin.& exit /b 2
if not exist logs mkdir logs

for /f "usebackq eol=# tokens=1,2" %%r in ("tests.txt") do call :consider %%r %%s
if %programs%==0 echo no program was chosen: tests.txt lists them.& exit /b 2

echo.
for %%r in (core service host) do call :summary %%r
if %left_out% gtr 0 echo left out: %left_out% programs, with the reasons in tests.txt
if not defined bad echo all passed
for %%p in (%bad%) do echo FAILED: %%p
if not defined wanted pause
if defined bad exit /b 1
exit /b 0

:consider
if "%1"=="left-out" set /a left_out+=1 & exit /b
if not defined wanted goto :run
for %%w in (%wanted%) do (
  if "%%w"=="%1" goto :run
  if "%%w"=="%1.%2" goto :run
)
exit /b

rem A program passes if each of its cases ended and its status is 0 afterwards: a crash may come after the last case, and
rem a program that ends in the middle may have status 0.
:run
set /a programs+=1, planned=0, passed=0, failed=0, skipped=0
"bin\%2.exe" > "logs\%2.log" 2>&1
set "status=%errorlevel%"
rem A process that a test started may end later and hold the log open until then: a redirection could not read it.
copy "logs\%2.log" "logs\%2.lines" > nul
rem Only lines of GoogleTest itself: the text of a failure may have quotes that the comparisons below cannot hold.
find "[==========] Running" < "logs\%2.lines" > "logs\%2.counts"
find "[  PASSED  ]" < "logs\%2.lines" >> "logs\%2.counts"
find "listed below:" < "logs\%2.lines" >> "logs\%2.counts"
for /f "usebackq tokens=1-5" %%a in ("logs\%2.counts") do (
  if "%%a %%b"=="[==========] Running" set "planned=%%c"
  if "%%a%%b%%c"=="[PASSED]" set "passed=%%d"
  if "%%a%%b%%c%%e"=="[FAILED]tests," set "failed=%%d"
  if "%%a%%b%%c%%e"=="[FAILED]test," set "failed=%%d"
  if "%%a%%b%%c%%e"=="[SKIPPED]tests," set "skipped=%%d"
  if "%%a%%b%%c%%e"=="[SKIPPED]test," set "skipped=%%d"
)
del "logs\%2.lines" "logs\%2.counts"
set /a passed_%1+=passed, failed_%1+=failed, skipped_%1+=skipped, ended=passed+failed+skipped
set "verdict=passed"
if not "%failed%"=="0" set "verdict=FAILED"
if not "%ended%"=="%planned%" set "verdict=FAILED, %ended% of %planned% cases ended"
if "%planned%"=="0" set "verdict=FAILED, it began no case"
if not "%status%"=="0" if "%verdict%"=="passed" set "verdict=FAILED after its last case"
if not "%verdict%"=="passed" set "bad=%bad% %1.%2"
if not "%verdict%"=="passed" set "verdict=%verdict%, status %status%: see logs\%2.log"
echo %1.%2: %verdict%
exit /b

:summary
call echo %1: %%passed_%1%% passed, %%failed_%1%% failed, %%skipped_%1%% skipped
exit /b
