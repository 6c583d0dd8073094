;;; emacs.el --- Emacs in batch with editors/emacs and the real server  -*- lexical-binding: t; -*-

;; Started in an empty folder; prints "# pass N", or what went wrong and exits with 1.

(require 'package)
(add-to-list 'package-directory-list "/usr/share/emacs/site-lisp/elpa")
(package-initialize)
(add-to-list 'load-path (concat (getenv "OMBREL_SOURCES") "/editors/emacs"))
(require 'cl-lib)
(require 'flymake)
(require 'ombrel-mode)

(setq ombrel-server-command (list (concat (getenv "OMBREL_PROGRAMS") "/ombrel-lsp"))
      ombrel-server-settings '(:options (:line (:indentSize 3)))
      eglot-autoshutdown nil
      eglot-connect-timeout 20
      make-backup-files nil
      inhibit-message t)

(defvar passed 0)

(defun expect (wanted found what)
  (unless (equal wanted found)
    (error "%s: expected %S, found %S" what wanted found))
  (cl-incf passed))

(defun wait-for (what condition)
  (let ((deadline (+ (float-time) 20)))
    (while (not (funcall condition))
      (when (> (float-time) deadline)
        (error "Waited for %s" what))
      (accept-process-output nil 0.05)))
  (cl-incf passed))

(defun text-of-buffer ()
  (buffer-substring-no-properties (point-min) (point-max)))

(defun open (name text)
  "Visit a new file and connect it with the server."
  (let ((coding-system-for-write 'utf-8-unix))
    (write-region text nil name nil 'silent))
  (find-file name)
  (expect 'ombrel-mode major-mode name)
  (unless (eglot-current-server)
    (apply #'eglot (eglot--guess-contact)))
  (unless eglot--managed-mode
    (eglot--maybe-activate-editing-mode)))

(defconst slanted "if a\nx=1; %  ä𝄞\n if b\ny\nend\n end\n")
(defconst straight "if a\n   x=1; %  ä𝄞\n   if b\n      y\n   end\nend\n")

(defun face-at (text)
  (goto-char (point-min))
  (search-forward text)
  (get-text-property (match-beginning 0) 'face))

(defun run ()
  (open "a.omb" slanted)
  (ombrel-format-region-or-buffer)
  (expect straight (text-of-buffer) "format")
  ;; Part of the buffer, after changes that the server has to know of.
  (erase-buffer)
  (insert slanted)
  (goto-char (point-min))
  (forward-line 1)
  (eglot-format (point) (line-end-position 2))
  (expect "if a\n   x=1; %  ä𝄞\n   if b\ny\nend\n end\n" (text-of-buffer) "region")
  (forward-line 2)
  (indent-according-to-mode)
  (expect "if a\n   x=1; %  ä𝄞\n   if b\n      y\nend\n end\n" (text-of-buffer) "line")
  (goto-char (point-min))
  (insert "% 𝄞e\u0301\n")
  (setq ombrel-format-on-save t)
  (dolist (size '(2 5))
    (with-temp-file ".ombrel-format.json"
      (insert (format "{\"line\": {\"indentSize\": %d}}" size)))
    (set-buffer-modified-p t)
    (save-buffer)
    (expect (concat (make-string size ?\s) "if b")
            (buffer-substring-no-properties (line-beginning-position 3) (line-end-position 3))
            "saved with changed options"))
  (expect (text-of-buffer) (with-temp-buffer (insert-file-contents "a.omb") (text-of-buffer)) "the file")
  (ombrel-show-options)
  (with-current-buffer "*Ombrel options*"
    (goto-char (point-min))
    (expect t (and (re-search-forward "^line\\.indentSize +5 +.*ombrel-format\\.json" nil t) t) "options"))
  (open "b.omb" (replace-regexp-in-string "\n" "\r\n" slanted))
  (expect 1 (coding-system-eol-type buffer-file-coding-system) "line ends")
  (set-buffer-modified-p t)
  (save-buffer)
  (expect "     if b\r" (with-temp-buffer
                          (insert-file-contents-literally "b.omb")
                          (forward-line 2)
                          (buffer-substring-no-properties (point) (line-end-position)))
          "line ends after saving")
  (open "c.omb" "x = (1;\ny = 2;\n")
  (flymake-start)
  (wait-for "a diagnostic" (lambda () (= 1 (length (flymake-diagnostics)))))
  (expect 7 (flymake-diagnostic-beg (car (flymake-diagnostics))) "place")
  (goto-char 7)
  (insert ")")
  (eglot--signal-textDocument/didChange)
  (wait-for "no diagnostic" (lambda () (flymake-start) (null (flymake-diagnostics))))
  (open "d.omb" "x = a' * 'b'; % c\n%{\nit's\n%}\nif s.end, end\ny = f('it''s', ... 'tail\n2)\n")
  (font-lock-ensure)
  (pcase-dolist (`(,text ,face) '(("' *" nil) ("'b'" font-lock-string-face) ("c\n" font-lock-comment-face)
                                  ("it's" font-lock-comment-face) ("if s" font-lock-keyword-face) ("end, " nil)
                                  ("s'," font-lock-string-face) ("tail" font-lock-comment-face) ("y =" nil)))
    (expect face (face-at text) text))
  (let ((process (jsonrpc--process (eglot-current-server))))
    (eglot-shutdown (eglot-current-server))
    (wait-for "the end of the server" (lambda () (not (process-live-p process))))))

(condition-case fault
    (run)
  (error (setq inhibit-message nil)
         (princ (format "%s\n" (error-message-string fault)))
         (kill-emacs 1)))
(princ (format "# pass %d\n" passed))
