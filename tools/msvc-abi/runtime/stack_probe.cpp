// Touches every page of a large frame, so that Windows enlarges the stack. rax is the size of the
// frame; no register is changed.
__asm__(R"(
  .intel_syntax noprefix
  .globl __chkstk
  .def __chkstk; .scl 2; .type 32; .endef
__chkstk:
  push rcx
  push rax
  cmp rax, 0x1000
  lea rcx, [rsp + 24]
  jb .Llast
.Lpage:
  sub rcx, 0x1000
  test [rcx], rcx
  sub rax, 0x1000
  cmp rax, 0x1000
  ja .Lpage
.Llast:
  sub rcx, rax
  test [rcx], rcx
  pop rax
  pop rcx
  ret
)");
